#ifndef VOREL_TOOLS_VOREL_POINT_QUERY_H_
#define VOREL_TOOLS_VOREL_POINT_QUERY_H_

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "base/geo_coordinate.h"
#include "tools/vorel/command_output.h"
#include "tools/vorel/geojson_writer.h"
#include "tools/vorel/geometry_input.h"
#include "tools/vorel/map_picture.h"
#include "tools/vorel/view.h"

namespace vorel::tool {

/// Where a `PointQuery` reads from and writes to. "Figures" are what the points are held against: lines or polygons.
struct PointQueryOptions {
  std::string figures;
  std::string points = "-";
  OutputOptions output;
};

/// Adds the argument with the figures, of which there is no default, and POINTS.
/// @param argument  how the help calls the figures, such as "LINE"
/// @param figures   what they are, such as "lines"
void AddPointQueryArguments(CLI::App& arguments, PointQueryOptions& options, const std::string& argument,
                            const std::string& figures);

/// Adds --out and --picture.
void AddPointQueryOutput(CLI::App& arguments, PointQueryOptions& options, const std::string& figures);

/// A run of a command that tells for each point of one input how it lies to the figures of another, which are held in
/// memory: one Point with the answer for each point, and a map of figures and dots, filled where the answer is yes.
class PointQuery {
 public:
  virtual ~PointQuery() = default;
  PointQuery(const PointQuery&) = delete;
  PointQuery& operator=(const PointQuery&) = delete;

  void Run();

 protected:
  /// @param argument  as for `AddPointQueryArguments`
  /// @param noun      what the figures are, such as "line"
  PointQuery(const PointQueryOptions& options, const std::string& argument, const std::string& noun);

  /// Reads the figures and adds them to `bounds`.
  virtual void ReadFigures(GeometryInput& input, BoundsCollector& bounds) = 0;

  /// Writes the properties that tell how the point lies.
  /// @return whether the answer is yes
  virtual bool WriteAnswer(const tarvo::GeoCoordinate& point, GeoJsonWriter& writer) = 0;

  /// Names what the command's picture shows in a legend that names nothing yet.
  virtual void NameInLegend(MapLegend& legend) const = 0;
  virtual void DrawFigures(MapPicture& picture) const = 0;

  /// @param yesText, noText    how many points have which answer, such as "2 points"
  /// @param figuresTitle       the name of the figures' input
  virtual std::vector<std::string> Subtitles(const std::string& yesText, const std::string& noText,
                                             const std::string& figuresTitle) const = 0;

 private:
  void StartPicture();
  void WritePoint(const tarvo::GeoCoordinate& point, std::size_t pointIndex, GeoJsonWriter& writer);

  std::optional<GeometryInput> figureInput_;
  std::optional<GeometryInput> pointInput_;
  std::optional<CommandOutput> output_;
  std::optional<MapPicture> picture_;
  BoundsCollector bounds_;
  std::size_t pointCount_ = 0;
  std::size_t yesCount_ = 0;
};

}  // namespace vorel::tool

#endif  // VOREL_TOOLS_VOREL_POINT_QUERY_H_
