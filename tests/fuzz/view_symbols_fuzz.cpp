#include "fuzz/fuzz_target.h"

#include <cmath>
#include <memory>
#include <string>

#include "logging/elapsed_timer.h"
#include "logging/instance_id.h"
#include "logging/logger.h"
#include "logging/sink.h"
#include "logging/tag_names.h"
#include "reference/view_symbols_reference.h"

using fuzz::FuzzInput;
using fuzz::Library;
using tarvo::GeoCoordinate;

namespace {

int timerReports = 0;
std::string timedOwner;

plog::MemorySink& Records() {
  static const auto sink = [] {
    auto made = std::make_shared<plog::MemorySink>();
    plog::Logger::Register(vorel::logging::vorel_log_instance_id_, plog::LogLevel::kDebug, {made});
    vorel::logging::SetElapsedTimeListener(
        [](const std::string& owner, const std::string& name, std::chrono::nanoseconds elapsed) {
          if (name == "GetInterpolateShapePoints" && elapsed.count() >= 0) ++timerReports;
          timedOwner = owner;
        });
    return made;
  }();
  return *sink;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzInput input(data, size);
  do {
    const fuzz::Line shape = input.PointLine(120);
    const bool isMainRoute = input.Flag();
    const auto viewRect = input.RectNear(shape);
    const bool areaIsShape = input.Byte() % 8 == 1;
    fuzz::Line area = input.PointLine(20);
    if (areaIsShape) area = shape;
    // Some length / interval points come out.
    int interval =
        input.Flag() ? input.Index(300) : static_cast<int>(input.MetresAlong(shape) < 1e6 ? input.Byte() : 7);
    const double length = fuzz::FiniteLength(shape);
    if (interval > 0 && length / interval > 3000.0) interval = static_cast<int>(length / 3000.0) + 1;
    const std::string owner = input.Text(5);
    std::vector<fuzz::Line> out(input.Below(3), fuzz::Line{{1.5, 2.5}});
    std::vector<fuzz::Line> expected = out;
    Records().Clear();
    timerReports = 0;
    Library::GetInterpolateShapePoints(shape, isMainRoute, viewRect, areaIsShape ? shape : area, interval,
                                       owner, out);
    const int count =
        reference::GetInterpolateShapePoints(shape, isMainRoute, viewRect, area, interval, owner, expected);
    EXPECT_SAME(out, expected);
    EXPECT_HOLDS(timerReports == 1);
    EXPECT_HOLDS(timedOwner == owner);
    EXPECT_HOLDS(Records().Count() == (count < 0 ? 0u : 1u));
    if (count >= 0) {
      const plog::StoredRecord record = Records().Records()[0];
      EXPECT_HOLDS(record.level == plog::LogLevel::kDebug);
      const std::string message =
          "[Vorel][" + owner + "]" + vorel::logging::GetTagName(vorel::logging::kGeometryTagIndex) +
          "main route:" + (isMainRoute ? "1" : "0") + ",pt count:" + std::to_string(count);
      if (record.message != message) fuzz::Fail(record.message.c_str(), message.c_str(), __FILE__, __LINE__);
    }
  } while (!input.IsAtEnd());
  return 0;
}
