// Each row of docs/contracts.md against what the function does: what it clears, appends and overwrites, whether it
// allocates and throws, what all-NaN input gives, and that an output may be what the row allows it to be.

#include <cstddef>
#include <map>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "contracts/page.h"
#include "contracts/seen.h"
#include "support/allocation_counter.h"

namespace vorel::test::contracts {
namespace {

SeenFunctions SeeAll() {
  SeenFunctions all;
  for (const auto& see : {SeeAngles, SeePoints, SeeMeasurement, SeeSampling, SeeRouteSampling, SeeContainment,
                          SeeRoutes, SeeProjection, SeeLanes, SeeBoundsAndPieces}) {
    for (auto& [name, seen] : see()) all[name] = std::move(seen);
  }
  return all;
}

/// What the page says of an output: the first verb behind its name.
std::string SaidOf(const std::string& cell, const std::string& output) {
  const std::size_t start = cell.find("`" + output + "`");
  std::string said;
  std::size_t nearest = std::string::npos;
  for (const char* verb : {"appended", "cleared", "overwritten", "grows", "not modified"}) {
    const std::size_t at = start == std::string::npos ? start : cell.find(verb, start);
    if (at < nearest) {
      nearest = at;
      said = verb;
    }
  }
  return said;
}

bool Agrees(const std::string& said, const std::string& seen) {
  if (seen == "gone") return said == "cleared" || said == "overwritten";
  if (seen == "changed") return said == "overwritten";
  if (seen == "grown") return said == "grows";
  if (seen == "same") return said == "not modified";
  return said == seen;
}

TEST(Contracts, ThePageAndTheFunctionsAgree) {
  const std::map<std::string, ContractsRow> rows = ReadContractsPage(VOREL_CONTRACTS_PAGE);
  ASSERT_GE(rows.size(), 60u) << "the page could not be read";
  const SeenFunctions all = SeeAll();
  for (const auto& [name, row] : rows) EXPECT_EQ(all.count(name), 1u) << name << " is not tried here";
  for (const auto& [name, seen] : all) {
    SCOPED_TRACE(name);
    ASSERT_EQ(rows.count(name), 1u) << "no such row";
    const ContractsRow& row = rows.at(name);

    const std::string& output = row.at("Output");
    if (seen.outputs.empty()) {
      EXPECT_EQ(output, "the result");
    }
    for (const auto& [parameter, fate] : seen.outputs) {
      EXPECT_TRUE(Agrees(SaidOf(output, parameter), fate))
          << parameter << ": \"" << output << "\", seen: " << fate;
    }
    EXPECT_EQ(output.find("untouched") != std::string::npos, seen.refusalLeavesOutputs) << output;

    EXPECT_EQ(row.at("Throws").rfind("std::out_of_range", 0) == 0, seen.throwsOutOfRange) << row.at("Throws");
    if (!seen.throwsOutOfRange) {
      EXPECT_EQ(row.at("Throws"), "nothing");
    }

    if (vorel::test::CanCountAllocations()) {
      EXPECT_EQ(row.at("Allocates") != "nothing", seen.allocates) << row.at("Allocates");
    }

    EXPECT_FALSE(seen.fromNaN.empty());
    EXPECT_EQ(row.at("NaN gives").rfind(seen.fromNaN, 0), 0u)
        << row.at("NaN gives") << ", seen: " << seen.fromNaN;

    EXPECT_EQ(row.at("Aliasing").find("may be") != std::string::npos ||
                  row.at("Aliasing").find("may lie in") != std::string::npos,
              seen.sharesAllowed || row.at("Aliasing").find("no element") == 0 ||
                  row.at("Aliasing").find("neither output may") == 0)
        << row.at("Aliasing");
  }
}

}  // namespace
}  // namespace vorel::test::contracts
