// Failure numbers shown to the user; their texts are the keys of section "failures" of the language file.
#pragma once

namespace tv {

enum FailureNumber : int {
  kNoFailure = 0,
  // arithmetic
  kInvalidArgument = 5,  // invalid root, logarithm, power or arc sine
  kOverflow = 6,         // overflow or any other result that is not finite
  kDivisionByZero = 11,
  // files
  kFileNotFound = 53,
  kFileError = 57,  // other read or write error
  kDiskFull = 61,
  kPermissionDenied = 70,
  kFolderNotFound = 76,
};

}  // namespace tv
