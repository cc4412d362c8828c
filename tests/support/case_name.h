#ifndef VOREL_TESTS_SUPPORT_CASE_NAME_H_
#define VOREL_TESTS_SUPPORT_CASE_NAME_H_

#include <string>

#include <gtest/gtest.h>

namespace vorel::test {

/// Names the rows of an edge-case table by their field `name`: the last argument of INSTANTIATE_TEST_SUITE_P.
template <class Case>
std::string CaseName(const testing::TestParamInfo<Case>& row) {
  return row.param.name;
}

}  // namespace vorel::test

#endif  // VOREL_TESTS_SUPPORT_CASE_NAME_H_
