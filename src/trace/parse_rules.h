// Subsampled reading: selects the samples to keep from a long recording.
//
//   Beginning     BeginParse
//   After a commit of the parse panel's field   ParseCountChanged  ParseDurationChanged  ParseStartChanged
//                 ParseStartTimeChanged  ParseSkipChanged
//   At the end    AcceptParse  CancelParse
//   As a value    StoredParse  StoreParse
//
// They read and write the Parse... fields of `Trace` and read `Model.ADInterval`. For any typed value they
// keep at least one sample, and no sample after `Trace.ParseLength`.
#pragma once

namespace zelvane {

/// The Parse... fields of `Trace`.
struct ParseSettings {
  int requested = 0;
  int skip = 1;
  int count = 0;
  int start = 0;
  float startTime = 0.0F;
  float interval = 0.0F;
  float duration = 0.0F;
  int maxPoints = 0;
  int result = 0;
  int length = 0;
};

ParseSettings StoredParse();
void StoreParse(const ParseSettings& settings);

/// Prepares the fields for a file with `length` samples of the channel: a skip that makes the file fit, and
/// a start and a count within the file. Reduces the count only if it does not fit.
void BeginParse(int length, int skip);

void ParseCountChanged();
void ParseDurationChanged();
void ParseStartChanged();  // shows a message and uses 0 when the start is after the end of the file
void ParseStartTimeChanged();
void ParseSkipChanged();

/// Makes all fields consistent after any change and sets `Trace.ParseResult`.
void AcceptParse();
void CancelParse();

}  // namespace zelvane
