#include "svg_timeline.h"

#include <algorithm>
#include <cstdio>
#include <sstream>

#include "channels.h"
#include "timecode/timecode.h"

namespace tcs::cli {
namespace {

constexpr double kLabelWidth = 56;   // lane names on the left
constexpr double kRulerHeight = 34;
constexpr double kLaneHeight = 34;
constexpr double kLaneGap = 6;
constexpr double kMargin = 12;
constexpr double kCharWidth = 6.6;  // 11px sans-serif, roughly
constexpr double kMinWidth = 960;
constexpr double kMaxWidth = 60000;
constexpr double kPixelsPerClip = 64;  // in the busiest lane
constexpr double kMinTickGap = 110;

std::string Escape(const std::string& text) {
  std::string out;
  for (const char c : text) {
    switch (c) {
      case '&': out += "&amp;"; break;
      case '<': out += "&lt;"; break;
      case '>': out += "&gt;"; break;
      case '"': out += "&quot;"; break;
      case '\'': out += "&apos;"; break;
      default:
        // Control characters are not allowed in XML 1.0.
        if (static_cast<unsigned char>(c) >= 0x20 || c == '\t') out += c;
    }
  }
  return out;
}

std::string Num(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%.1f", value);
  return text;
}

// A tick step, in frames, from one frame up through seconds and minutes to
// hours, the first whose ticks lie at least kMinTickGap pixels apart.
uint64_t TickStep(double pixelsPerFrame, uint32_t fps) {
  static constexpr uint64_t kSeconds[] = {1, 2, 5, 10, 15, 30, 60, 120, 300, 600, 900, 1800, 3600, 7200, 18000, 36000};
  for (const uint64_t frames : {1ull, 2ull, 5ull, 10ull}) {
    if (frames < fps && frames * pixelsPerFrame >= kMinTickGap) return frames;
  }
  for (const uint64_t seconds : kSeconds) {
    if (seconds * fps * pixelsPerFrame >= kMinTickGap) return seconds * fps;
  }
  return 36000ull * fps;
}

// The name cut to fit `width` pixels, with an ellipsis; empty when not even
// three characters fit.
std::string FitLabel(const std::string& name, double width) {
  const size_t room = width > 8 ? static_cast<size_t>((width - 8) / kCharWidth) : 0;
  if (name.size() <= room) return name;
  if (room < 4) return "";
  size_t cut = room - 1;
  while (cut > 0 && (static_cast<unsigned char>(name[cut]) & 0xC0) == 0x80) --cut;  // UTF-8
  return name.substr(0, cut) + "\u2026";
}

}  // namespace

std::string TimelineSvg(const std::vector<ChannelView>& channels, FrameRate rate,
                        const std::string& title) {
  uint32_t first = 0, end = 0;
  size_t busiest = 0;
  bool any = false;
  for (const ChannelView& channel : channels) {
    busiest = std::max(busiest, channel.clips.size());
    for (const ClipView& clip : channel.clips) {
      first = any ? std::min(first, clip.recordIn) : clip.recordIn;
      end = any ? std::max(end, clip.recordOut) : clip.recordOut;
      any = true;
    }
  }
  if (!any) end = first + rate.fps * 10;
  const double span = std::max<double>(1, end - first);
  const double width = std::clamp(busiest * kPixelsPerClip, kMinWidth, kMaxWidth);
  const double scale = width / span;
  const double lanesTop = kMargin + kRulerHeight;
  const double height = lanesTop + channels.size() * (kLaneHeight + kLaneGap) + kMargin;
  const double totalWidth = kMargin + kLabelWidth + width + kMargin;
  const auto x = [&](uint32_t frame) { return kMargin + kLabelWidth + (frame - first) * scale; };

  std::ostringstream svg;
  svg << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      << "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" << Num(totalWidth) << "\" height=\""
      << Num(height) << "\" viewBox=\"0 0 " << Num(totalWidth) << ' ' << Num(height)
      << "\" font-family=\"sans-serif\" font-size=\"11\">\n"
      << "<title>" << Escape(title) << "</title>\n"
      << "<style>.clip{stroke:#1d2733;stroke-width:0.6}.v{fill:#8fb8de}.a{fill:#9fd3a8}"
         ".x{fill:#d0c4e4}.transition{fill:#e4572e;fill-opacity:0.85}.tick{stroke:#9aa5b1;"
         "stroke-width:0.6}.band{fill:#f4f6f8}text{fill:#1d2733}</style>\n"
      << "<rect width=\"100%\" height=\"100%\" fill=\"#ffffff\"/>\n";

  svg << "<g class=\"ruler\">\n";
  const uint64_t step = TickStep(scale, rate.fps);
  for (uint64_t t = (first + step - 1) / step * step; t <= end; t += step) {
    const double tx = x(static_cast<uint32_t>(t));
    svg << "<line class=\"tick\" x1=\"" << Num(tx) << "\" y1=\"" << Num(kMargin + 18) << "\" x2=\""
        << Num(tx) << "\" y2=\"" << Num(height - kMargin) << "\"/>"
        << "<text x=\"" << Num(tx + 2) << "\" y=\"" << Num(kMargin + 14) << "\">"
        << timecode::TimecodeString(static_cast<uint32_t>(t), rate) << "</text>\n";
  }
  svg << "</g>\n";

  for (size_t lane = 0; lane < channels.size(); ++lane) {
    const ChannelView& channel = channels[lane];
    const double y = lanesTop + lane * (kLaneHeight + kLaneGap);
    const char* kind = channel.channel < 32 ? "v" : channel.channel < 64 ? "a" : "x";
    svg << "<g class=\"lane\" id=\"" << ChannelName(channel.channel) << "\">\n"
        << "<rect class=\"band\" x=\"" << Num(kMargin + kLabelWidth) << "\" y=\"" << Num(y)
        << "\" width=\"" << Num(width) << "\" height=\"" << Num(kLaneHeight) << "\"/>"
        << "<text x=\"" << Num(kMargin) << "\" y=\"" << Num(y + kLaneHeight / 2 + 4)
        << "\" font-weight=\"bold\">" << ChannelName(channel.channel) << "</text>\n";
    for (const ClipView& clip : channel.clips) {
      const double cx = x(clip.recordIn);
      const double cw = std::max(1.0, (clip.recordOut - clip.recordIn) * scale);
      svg << "<g><title>" << Escape(clip.name) << "  " << timecode::TimecodeString(clip.recordIn, rate)
          << " - " << timecode::TimecodeString(clip.recordOut, rate) << "  source "
          << timecode::TimecodeString(clip.sourceIn, rate) << " - " << timecode::TimecodeString(clip.sourceOut, rate)
          << (clip.reel.empty() ? "" : "  reel " + Escape(clip.reel)) << "  "
          << Escape(TransitionText(clip)) << "</title>"
          << "<rect class=\"clip " << kind << "\" x=\"" << Num(cx) << "\" y=\"" << Num(y + 2)
          << "\" width=\"" << Num(cw) << "\" height=\"" << Num(kLaneHeight - 4) << "\"/>";
      double labelX = cx + 4;
      if (!clip.transition.empty()) {
        const double tw = std::clamp(clip.transitionFrames * scale, 4.0, cw);
        labelX += tw;
        svg << "<path class=\"transition\" d=\"M" << Num(cx) << ' ' << Num(y + 2) << " L"
            << Num(cx + tw) << ' ' << Num(y + kLaneHeight / 2) << " L" << Num(cx) << ' '
            << Num(y + kLaneHeight - 2) << " Z\"/>";
      }
      const std::string label = FitLabel(clip.name, cx + cw - labelX + 4);
      if (!label.empty()) {
        svg << "<text x=\"" << Num(labelX) << "\" y=\"" << Num(y + kLaneHeight / 2 + 4) << "\">"
            << Escape(label) << "</text>";
      }
      svg << "</g>\n";
    }
    svg << "</g>\n";
  }
  svg << "</svg>\n";
  return svg.str();
}

}  // namespace tcs::cli
