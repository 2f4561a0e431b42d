// Paths: split and join POSIX paths in the shape of the Windows path calls.
//
//   /data/cuts/timeline.spc  ->  drive ""  directory "/data/cuts/"
//                                file name "timeline"  extension ".spc"
//
// There are no drives: the drive is always empty. The directory keeps its
// trailing '/', the extension its dot. A name's leading dots belong to the
// name (".profile" has no extension, "..a.b" has ".b").
#include <cstring>

#include "platform/qvos.h"

namespace {

// Copies [begin, begin + length) into out, cut to size - 1 characters.
void CopyCut(char* out, size_t size, const char* begin, size_t length) {
  if (out == nullptr) return;
  const size_t kept = length < size ? length : size - 1;
  std::memcpy(out, begin, kept);
  out[kept] = '\0';
}

// Appends text to out (holding `used` characters), cut to size - 1 in all.
size_t Append(char* out, size_t size, size_t used, const char* text, size_t length) {
  const size_t room = size - 1 - used;
  const size_t kept = length < room ? length : room;
  std::memcpy(out + used, text, kept);
  out[used + kept] = '\0';
  return used + kept;
}

}  // namespace

extern "C" {

void qvOSSplitPath(const char* path, char* drive, char* directory, char* fileName,
                   char* extension) {
  if (path == nullptr) path = "";
  const size_t length = std::strlen(path);
  const char* slash = std::strrchr(path, '/');
  const char* name = slash == nullptr ? path : slash + 1;
  const char* end = path + length;

  const char* stem_begin = name;
  while (*stem_begin == '.') ++stem_begin;
  const char* dot = nullptr;
  for (const char* c = stem_begin; c != end; ++c) {
    if (*c == '.') dot = c;
  }
  const char* name_end = dot == nullptr ? end : dot;

  CopyCut(drive, QV_MAX_PATH, path, 0);
  CopyCut(directory, QV_MAX_PATH, path, static_cast<size_t>(name - path));
  CopyCut(fileName, QV_MAX_FNAME, name, static_cast<size_t>(name_end - name));
  CopyCut(extension, QV_MAX_FNAME, name_end, static_cast<size_t>(end - name_end));
}

void qvOSMakePath(char* out, const char* drive, const char* directory, const char* fileName,
                  const char* extension) {
  if (out == nullptr) return;
  out[0] = '\0';
  size_t used = 0;
  if (drive != nullptr) used = Append(out, QV_MAX_PATH, used, drive, std::strlen(drive));
  if (directory != nullptr && directory[0] != '\0') {
    const size_t length = std::strlen(directory);
    used = Append(out, QV_MAX_PATH, used, directory, length);
    if (directory[length - 1] != '/') used = Append(out, QV_MAX_PATH, used, "/", 1);
  }
  if (fileName != nullptr) used = Append(out, QV_MAX_PATH, used, fileName, std::strlen(fileName));
  if (extension != nullptr && extension[0] != '\0') {
    if (extension[0] != '.') used = Append(out, QV_MAX_PATH, used, ".", 1);
    Append(out, QV_MAX_PATH, used, extension, std::strlen(extension));
  }
}

}  // extern "C"
