// Documents that repeat one costly structure (tests/support/costly_documents.h), read in both
// modes: the memory a read holds at its peak and the processor time it takes stay within fixed
// multiples of the document's size, however the document repeats its structure.

#include <gtest/gtest.h>

#include <cstdio>
#include <ctime>
#include <string>
#include <tuple>

#include "tests/cost/allocation_meter.h"
#include "tests/support/costly_documents.h"
#include "tests/support/documents.h"

namespace {

using zyltest::CostlyKind;

constexpr size_t kDocumentBytes = 512 * 1024;
// Bytes held at the peak of a read for each byte of the document; a plain long float_array,
// the densest honest content, needs about 20.
constexpr size_t kBytesPerDocumentByte = 48;
// A `<node/>` takes seven bytes and makes a node and its null attribute twice (in the visual
// scene and in its copy into the scene being read), about a kilobyte: the densest structure of
// all, bounded by its own multiple. Kit objects are carved out of slabs, whose last one may be
// partly unused (an eighth of the objects' room at most): counted here as held.
constexpr size_t kBytesPerEmptyNodesByte = 208;
// Processor seconds for a read of one megabyte; honest documents of that size take a tenth of
// a second in a release build. Sanitizers make every read several times slower.
#if defined(__SANITIZE_ADDRESS__)
constexpr double kSecondsPerMegabyte = 10.0;
#else
constexpr double kSecondsPerMegabyte = 2.0;
#endif

double ProcessorSeconds() { return static_cast<double>(std::clock()) / CLOCKS_PER_SEC; }

std::string CaseName(CostlyKind kind, bool complete) {
  return std::string(zyltest::CostlyName(kind)) + (complete ? "_Complete" : "_Default");
}

class ReadCost : public ::testing::TestWithParam<std::tuple<CostlyKind, bool>> {};

TEST_P(ReadCost, StaysProportionateToTheDocument) {
  const auto [kind, complete] = GetParam();
  const std::string document = zyltest::CostlyDocument(kind, kDocumentBytes);
  ASSERT_LE(document.size(), kDocumentBytes);
  ASSERT_GT(document.size(), kDocumentBytes / 2) << "the generator misses its size";
  zyltest::TempFile file(document);
  zyldae::ReadSettings settings;
  settings.complete = complete;
  // Without the output budget's floor, which lets any small document make 64 MiB, the budget
  // is a fixed multiple of the document's size.
  settings.integerOptions = {{"OUTPUT FLOOR", 0}};

  zyltest::ResetAllocationPeak();
  const double start = ProcessorSeconds();
  const zyldae::ReadResult read = zyldae::ReadDocument(file.Path().c_str(), settings);
  const double seconds = ProcessorSeconds() - start;
  const size_t peak = zyltest::AllocationPeakSinceReset();
  zyltest::ExpectSceneInvariants(read, zyltest::ChecksFor(document, complete));

  EXPECT_TRUE(read.ok) << (read.notifications.empty() ? "" : read.notifications.front().text.Std());
  const double megabytes = static_cast<double>(document.size()) / (1 << 20);
  const size_t allowed = kind == CostlyKind::kEmptyNodes ? kBytesPerEmptyNodesByte : kBytesPerDocumentByte;
  EXPECT_LE(peak, allowed * document.size())
      << "held " << peak / 1024 << " KB at the peak for a document of " << document.size() / 1024 << " KB";
  EXPECT_LE(seconds, kSecondsPerMegabyte * megabytes) << "took " << seconds << " s for " << megabytes << " MB";
  std::printf("%s: %zu KB document, %zu KB peak, %.3f s\n", CaseName(kind, complete).c_str(), document.size() / 1024,
              peak / 1024, seconds);
}

std::string ParamName(const ::testing::TestParamInfo<std::tuple<CostlyKind, bool>>& info) {
  return CaseName(std::get<0>(info.param), std::get<1>(info.param));
}

INSTANTIATE_TEST_SUITE_P(Documents, ReadCost,
                         ::testing::Combine(::testing::ValuesIn(zyltest::AllCostlyKinds()), ::testing::Bool()),
                         ParamName);

}  // namespace
