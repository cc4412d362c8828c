// Sees what the library reports: log records by a sink, running times by a listener. Silent without either.
#include <chrono>
#include <cstdio>
#include <memory>

#include "logging/elapsed_timer.h"
#include "logging/instance_id.h"
#include "logging/logger.h"
#include "logging/record.h"
#include "logging/sink.h"
#include "map_utils/vorel_geometry_algorithm.h"

int main() {
  using tarvo::GeoCoordinate;
  const auto sink = std::make_shared<plog::CallbackSink>([](const plog::Record& record) {
    std::printf("%s: %s\n", record.function, record.message.str().c_str());
  });
  plog::Logger::Register(vorel::logging::vorel_log_instance_id_, plog::LogLevel::kDebug, {sink});
  vorel::logging::SetElapsedTimeListener(
      [](const std::string& owner, const std::string& name, std::chrono::nanoseconds elapsed) {
        std::printf("%s of %s took %s\n", name.c_str(), owner.c_str(),
                    elapsed < std::chrono::seconds(1) ? "less than a second" : "long");
      });

  std::vector<std::vector<GeoCoordinate>> runs;
  vorel::VorelGeometryAlgorithm::GetInterpolateShapePoints(
      {{7.420, 43.730}, {7.425, 43.734}}, true, {{7.41, 43.72}, {7.43, 43.74}}, {}, 100, "map", runs);

  vorel::logging::SetElapsedTimeListener({});
  plog::Logger::Unregister(vorel::logging::vorel_log_instance_id_);
}
