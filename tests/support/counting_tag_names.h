#ifndef VOREL_TESTS_SUPPORT_COUNTING_TAG_NAMES_H_
#define VOREL_TESTS_SUPPORT_COUNTING_TAG_NAMES_H_

#include <cstddef>
#include <vector>

namespace vorel::test {

// Linking counting_tag_names.cpp into a test, together with the static library, puts a GetTagName in place of the
// library's that gives the same texts and keeps count.

/// The indices that GetTagName was called with, on any thread, since the start or the last reset.
std::vector<int> TagNameCalls();

void ResetTagNameCalls();

}  // namespace vorel::test

#endif  // VOREL_TESTS_SUPPORT_COUNTING_TAG_NAMES_H_
