// LogCapture: collects every line the error log writes while it lives.
#ifndef TCS_TESTS_SUPPORT_LOG_CAPTURE_H_
#define TCS_TESTS_SUPPORT_LOG_CAPTURE_H_

#include <mutex>
#include <string>
#include <vector>

namespace tcs_test {

class LogCapture {
 public:
  LogCapture();
  ~LogCapture();
  LogCapture(const LogCapture&) = delete;
  LogCapture& operator=(const LogCapture&) = delete;

  std::vector<std::string> Lines() const;
  void Clear();

 private:
  static void Sink(void* context, const char* line);
  mutable std::mutex mutex_;
  std::vector<std::string> lines_;  // guarded by mutex_
};

}  // namespace tcs_test

#endif  // TCS_TESTS_SUPPORT_LOG_CAPTURE_H_
