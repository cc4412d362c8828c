#ifndef VOREL_TESTS_CONTRACTS_PAGE_H_
#define VOREL_TESTS_CONTRACTS_PAGE_H_

#include <map>
#include <string>

namespace vorel::test {

/// One row of the table in docs/contracts.md, without the function: column -> text.
using ContractsRow = std::map<std::string, std::string>;

/// The page's rows by function; empty when the page cannot be read.
std::map<std::string, ContractsRow> ReadContractsPage(const std::string& path);

}  // namespace vorel::test

#endif  // VOREL_TESTS_CONTRACTS_PAGE_H_
