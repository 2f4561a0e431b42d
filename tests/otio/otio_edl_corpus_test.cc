// The real EDLs of tests/data/edl through .otio: each list read into a
// space, written as .otio, read into a second space: every clip is back on
// its channel, frame for frame, with its transition, name, reel and comment
// (texts that are not UTF-8 come back with U+FFFD where their bytes were
// not, and only those differ). An EDL written from the second space is then
// the one written from the first.
#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>
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

bool IsUtf8(const std::string& text) {
  try {
    (void)nlohmann::json(text).dump();
    return true;
  } catch (const nlohmann::json::type_error&) {
    return false;
  }
}

TEST(OtioEdlCorpus, EveryClipOfEveryRealListComesBackThroughOtio) {
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::directory_iterator(std::string(TCS_TEST_DATA_DIR) + "/edl")) {
    if (entry.path().extension() == ".edl") files.push_back(entry.path());
  }
  ASSERT_GE(files.size(), 21u);
  size_t clips = 0, latin = 0;
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
      ClipRow expected = before[i];
      for (std::string* field : {&expected.name, &expected.reel, &expected.comment, &expected.clipName}) {
        if (IsUtf8(*field)) continue;
        ++latin;
        *field = nlohmann::json::parse(nlohmann::json(*field).dump(
                                           -1, ' ', false, nlohmann::json::error_handler_t::replace))
                     .get<std::string>();
      }
      EXPECT_EQ(after[i], expected) << file << " clip " << i;
    }
    clips += before.size();
  }
  EXPECT_GT(clips, 500u);
  RecordProperty("clips", static_cast<int>(clips));
  RecordProperty("texts_not_utf8", static_cast<int>(latin));
}

}  // namespace
