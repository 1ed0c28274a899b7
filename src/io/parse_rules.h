// Subsampled reading: which samples of a long recording are kept.
//
//   Beginning     BeginParse
//   After a commit of the parse panel's field   ParseCountChanged  ParseDurationChanged  ParseStartChanged
//                 ParseStartTimeChanged  ParseSkipChanged
//   At the end    AcceptParse  CancelParse
//
// They read and write the Parse... fields of `Trace` and read `Model.ADInterval`. Whatever was typed, at
// least one sample is kept and none lies beyond `Trace.ParseLength`.
#pragma once

namespace zelvane {

/// Prepares the fields for a file with `length` samples of the channel: the skip that makes it fit, a start
/// and a count within the file. The count falls where it does not fit and otherwise stays as it was.
void BeginParse(int length, int skip);

void ParseCountChanged();
void ParseDurationChanged();
void ParseStartChanged();  // tells when the start lies beyond the file, and takes 0
void ParseStartTimeChanged();
void ParseSkipChanged();

/// Makes the fields agree, whichever of them were changed, and sets `Trace.ParseResult`.
void AcceptParse();
void CancelParse();

}  // namespace zelvane
