#include "fuzz/fuzz_target.h"

#include "reference/route_thinning_reference.h"

using fuzz::FuzzInput;
using fuzz::Library;
using tarvo::GeoCoordinate;

namespace {

/// Segments, some of which are long enough together for the cap on the number of points.
std::vector<fuzz::Line> Route(FuzzInput& input) {
  std::vector<fuzz::Line> route(input.Below(6));
  for (fuzz::Line& segment : route) {
    const std::size_t maxCount = input.Byte() % 4 == 1 ? 1600 : 30;
    segment = input.PointLine(maxCount);
  }
  return route;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzInput input(data, size);
  do {
    const std::vector<fuzz::Line> route = Route(input);
    const float minSpacing = static_cast<float>(route.empty() ? input.Metres() : input.MetresAlong(route[0]));
    static const int kWrappingLimits[] = {1073741823, 1073741824, -1073741824, -1073741825};
    const int pointLimit = input.Byte() % 16 == 1 ? kWrappingLimits[input.Below(4)] : input.Index(20);
    EXPECT_SAME(Library::PreProcessRoutePoints(route, minSpacing, pointLimit),
                reference::PreProcessRoutePoints(route, minSpacing, pointLimit));

    std::vector<std::vector<fuzz::Line>> routes(input.Below(4), route);
    for (std::size_t i = 1; i < routes.size(); ++i) routes[i] = Route(input);
    const int routeCount = input.Index(routes.size());
    const std::string owner = input.Text(3);
    std::vector<fuzz::Line> out(input.Below(3), fuzz::Line{{1.5, 2.5}});
    std::vector<fuzz::Line> expected = out;
    Library::PreProcessRoutePoints(routes, routeCount, minSpacing, pointLimit, owner, out);
    reference::PreProcessRoutePoints(routes, routeCount, minSpacing, pointLimit, owner, expected);
    EXPECT_SAME(out, expected);
  } while (!input.IsAtEnd());
  return 0;
}
