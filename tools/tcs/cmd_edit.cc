// tcs edit: edit operations given as arguments, each sent to the space as one
// command record through tcsSetMode (the path a host's control layer takes),
// then the result written as an EDL. Every operation names its channels as
// V1..V32 / A1..A32 (or 0..63), several joined by '+'; times are timecodes or
// frame counts.
//
//   overwrite=CH,AT,IN,OUT,NAME  lay source IN..OUT of NAME over CH from AT
//   insert=CH,AT,DURATION        open a gap of DURATION at AT; later clips move on
//                                (the space moves them one frame past the range it
//                                is given, so the range sent is DURATION - 1 long)
//   blank=CH,FROM,TO             clear FROM..TO, leaving a gap
//   delete=CH,FROM,TO            remove FROM..TO; later clips move back
//   trim=CH,AT,IN,OUT            the clip that starts at AT plays source IN..OUT
//   move=CH,AT,TO                the clip that starts at AT moves to start at TO
//
// -o onto the input keeps the old file as a numbered backup; -o - writes to
// standard output.
#include <cstring>
#include <iostream>

#include "channels.h"
#include "edit_request.h"
#include "formats.h"
#include "cli.h"
#include "output.h"
#include "timeline.h"

namespace tcs::cli {
namespace {

struct Op {
  std::string kind;
  std::vector<std::string> fields;
};

Op Split(const std::string& text) {
  const size_t equals = text.find('=');
  if (equals == std::string::npos) UsageFail("'" + text + "' is not an edit operation (KIND=ARGS)");
  Op op{text.substr(0, equals), {}};
  // The name of an overwrite is the rest of the text, commas and all.
  const size_t fieldCount = op.kind == "overwrite" ? 5 : std::string::npos;
  size_t at = equals + 1;
  while (true) {
    const size_t comma = op.fields.size() + 1 == fieldCount ? std::string::npos : text.find(',', at);
    op.fields.push_back(text.substr(at, comma - at));
    if (comma == std::string::npos) break;
    at = comma + 1;
  }
  return op;
}

ChannelMasks MasksArg(const std::string& text, const std::string& what) {
  size_t at = 0;
  while (true) {
    const size_t plus = text.find('+', at);
    const std::string one = text.substr(at, plus - at);
    const std::optional<uint32_t> channel = ParseChannel(one);
    if (!channel || *channel >= 64) {
      UsageFail(what + ": '" + one + "' is not a channel an edit can name (V1..V32, A1..A32, 0..63)");
    }
    if (plus == std::string::npos) break;
    at = plus + 1;
  }
  return *ParseChannels(text);
}

struct Form {
  const char* kind;
  host::EditKind edit;
  size_t fields;
  const char* usage;
};

constexpr Form kForms[] = {
    {"overwrite", host::EditKind::kOverwrite, 5, "overwrite=CH,AT,IN,OUT,NAME"},
    {"insert", host::EditKind::kInsert, 3, "insert=CH,AT,DURATION"},
    {"blank", host::EditKind::kBlank, 3, "blank=CH,FROM,TO"},
    {"delete", host::EditKind::kDelete, 3, "delete=CH,FROM,TO"},
    {"trim", host::EditKind::kTrim, 4, "trim=CH,AT,IN,OUT"},
    {"move", host::EditKind::kMove, 3, "move=CH,AT,TO"},
};

TCSCMD Build(const Timeline& timeline, const std::string& text, const std::string& what) {
  const Op op = Split(text);
  const Form* form = nullptr;
  for (const Form& f : kForms) {
    if (op.kind == f.kind) form = &f;
  }
  if (form == nullptr) {
    UsageFail(what + ": unknown operation '" + op.kind +
              "' (overwrite, insert, blank, delete, trim, move)");
  }
  if (op.fields.size() != form->fields) UsageFail(what + ": write " + form->usage);
  const ChannelMasks masks = MasksArg(op.fields[0], what);
  host::EditRequest edit;
  edit.kind = form->edit;
  edit.videoMask = masks.video;
  edit.audioMask = masks.audio;
  uint32_t* const times[] = {&edit.a, &edit.b, &edit.c};
  const size_t time_fields = form->edit == host::EditKind::kOverwrite ? 3 : form->fields - 1;
  for (size_t i = 0; i < time_fields; ++i) {
    *times[i] = TimecodeArg(op.fields[i + 1], timeline.rate(), what);
  }
  if (form->edit == host::EditKind::kOverwrite) edit.name = op.fields[4];
  if (const std::optional<std::string> problem = host::Problem(edit)) {
    UsageFail(what + ": " + *problem);
  }
  if (const std::optional<host::SpaceProblem> problem = host::ProblemIn(timeline.space(), edit)) {
    Fail(what + ": " + problem->Text(timeline.Tc(edit.a)));
  }
  return host::Record(edit);
}

}  // namespace

int RunEdit(const Args& args) {
  const std::optional<std::string> out = args.Value("-o");
  if (!out || out->empty()) UsageFail("give the file to write with -o OUT.edl");
  const std::vector<std::string>& positional = args.positional();
  if (positional.size() < 2) UsageFail("give at least one edit operation");
  // Standard output has the input's format; a name that says none, an EDL.
  const Format& from = FormatOf(positional[0], args.Value("--from"), "--from", &EdlFormat());
  const Format& to = FormatOf(*out, std::nullopt, "-o", *out == "-" ? &from : &EdlFormat());
  const Timeline timeline(positional[0], args.FpsOverride(), args.ReadOptions());
  for (size_t i = 1; i < positional.size(); ++i) {
    const std::string what = "operation " + std::to_string(i) + " (" + positional[i] + ")";
    TCSCMD cmd = Build(timeline, positional[i], what);
    ErrorLogCapture log;
    const uint32_t status = tcsSetMode(timeline.space(), &cmd);
    if (status != 0 || !log.lines().empty()) {
      char code[16];
      std::snprintf(code, sizeof code, "0x%X", status);
      Fail(what + ": refused" + (log.lines().empty() ? std::string(" (") + code + ")" : ": " + log.Joined()));
    }
  }
  const std::optional<std::string> backup =
      Deliver(*out, positional[0], to.write(timeline, timeline.title(), *out));
  if (*out == "-") return 0;
  std::cout << "wrote " << *out << " (" << positional.size() - 1
            << (positional.size() == 2 ? " operation" : " operations");
  if (backup) std::cout << "; the old file kept as " << *backup;
  std::cout << ")\n";
  return 0;
}

}  // namespace tcs::cli
