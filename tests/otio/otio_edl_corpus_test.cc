// The real EDLs of tests/data/edl through .otio: each list read into a
// space, written as .otio, read into a second space: every clip is back on
// its channel, frame for frame, with its transition, name, reel and comment
// (all of the corpus's texts are UTF-8; what happens to others is the
// writer test's). An EDL written from the second space is then the one
// written from the first.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "otio/otio.h"
#include "otio/otio_space.h"
#include "support/log_capture.h"
#include "support/test_clips.h"
#include "tcs.h"

namespace {

using tcs_test::ClipRow;
using tcs_test::OpenedSpace;

TEST(OtioEdlCorpus, EveryClipOfEveryRealListComesBackThroughOtio) {
  std::vector<std::filesystem::path> files;
  const std::string dir = std::string(TCS_TEST_DATA_DIR) + "/edl";
  for (const auto& entry : std::filesystem::directory_iterator(dir)) {
    if (entry.path().extension() == ".edl") files.push_back(entry.path());
  }
  ASSERT_GE(files.size(), 21u);
  size_t clips = 0;
  for (const std::filesystem::path& file : files) {
    OpenedSpace first;
    {
      tcs_test::LogCapture warnings;  // the lists' own warnings are the codec's business
      ASSERT_EQ(edlReadFile(first.get(), file.c_str(), nullptr), 0u) << file;
    }
    const std::vector<ClipRow> before = tcs_test::AllClips(first.get());
    EXPECT_FALSE(before.empty()) << file;
    std::string text;
    const tcs::otio::FrameRate rate = tcs::timecode::MakeFrameRate(30, true);
    ASSERT_EQ(tcs::otio::WriteOtioText(first.get(), {rate, file.stem().string()}, &text).status,
              tcs::otio::Status::kOk);
    OpenedSpace second;
    const tcs::otio::ReadResult read = tcs::otio::ReadOtioText(second.get(), text);
    ASSERT_EQ(read.status, tcs::otio::Status::kOk) << file << ": " << read.error;
    EXPECT_TRUE(read.warnings.empty()) << file << ": " << read.warnings[0].text;
    const std::vector<ClipRow> after = tcs_test::AllClips(second.get());
    ASSERT_EQ(after.size(), before.size()) << file;
    for (size_t i = 0; i < before.size(); ++i) {
      EXPECT_EQ(after[i], before[i]) << file << " clip " << i;
    }
    clips += before.size();
  }
  EXPECT_GT(clips, 500u);
}

}  // namespace
