// The timeline as an SVG picture: one lane per channel that holds clips,
// each play clip a box (class "clip") at its record position with its name
// when the name fits (always in its tooltip), transitions marked as a wedge
// at the clip's start (class "transition"), and a timecode ruler. The width
// grows with the busiest lane, so a few clips and a few thousand both stay
// readable. Pure: builds text from the views it is given.
#ifndef TCS_TOOLS_TCS_SVG_TIMELINE_H_
#define TCS_TOOLS_TCS_SVG_TIMELINE_H_

#include <string>
#include <vector>

#include "clips.h"
#include "cli.h"

namespace tcs::cli {

std::string TimelineSvg(const std::vector<ChannelView>& channels, FrameRate rate,
                        const std::string& title);

}  // namespace tcs::cli

#endif  // TCS_TOOLS_TCS_SVG_TIMELINE_H_
