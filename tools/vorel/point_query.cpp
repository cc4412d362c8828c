#include "tools/vorel/point_query.h"

#include "tools/vorel/failure.h"
#include "tools/vorel/plain_text.h"

namespace vorel::tool {

void AddPointQueryArguments(CLI::App& arguments, PointQueryOptions& options, const std::string& argument,
                            const std::string& figures) {
  arguments.add_option(argument, options.figures, "GeoJSON file with " + figures + "; - for standard input")
      ->type_name("FILE")
      ->required();
  arguments.add_option("POINTS", options.points, "GeoJSON file with points; standard input when absent or -")
      ->type_name("FILE");
}

void AddPointQueryOutput(CLI::App& arguments, PointQueryOptions& options, const std::string& figures) {
  AddOutputOptions(arguments, options.output, "Where the points go.",
                   "Also draw a map of " + figures + " and points, as SVG.");
}

PointQuery::PointQuery(const PointQueryOptions& options, const std::string& argument,
                       const std::string& noun) {
  if (options.figures == "-" && options.points == "-") {
    throw BadInput("POINTS -: standard input is read for the " + noun + " already");
  }
  figureInput_.emplace(options.figures, argument, noun);
  pointInput_.emplace(options.points, "POINTS", "point");
  output_.emplace(options.output,
                  std::vector<const TextSource*>{&figureInput_->source(), &pointInput_->source()});
}

void PointQuery::Run() {
  ReadFigures(*figureInput_, bounds_);
  if (output_->wantsPicture()) StartPicture();
  GeoJsonWriter writer(output_->out());
  pointInput_->ForEachPoint([&](const tarvo::GeoCoordinate& point, std::size_t pointIndex) {
    WritePoint(point, pointIndex, writer);
  });
  writer.Finish();
  if (picture_) {
    picture_->Write(PictureTitle(pointInput_->source()),
                    Subtitles(Counted(yesCount_, "point"), Counted(pointCount_ - yesCount_, "point"),
                              PictureTitle(figureInput_->source())),
                    output_->picture());
  }
  output_->Publish();
  figureInput_->NoteWhatIsLeftOut();
  pointInput_->NoteWhatIsLeftOut();
}

void PointQuery::StartPicture() {
  pointInput_->source().KeepForSecondPass();
  std::size_t count = 0;
  pointInput_->ForEachPoint([&](const tarvo::GeoCoordinate& point, std::size_t pointIndex) {
    bounds_.Add({point});
    count = pointIndex + 1;
  });
  MapLegend legend{"", "", "", "", "", "", ""};
  NameInLegend(legend);
  picture_.emplace(bounds_.Whole(), legend);
  picture_->SetPointCount(count);
  DrawFigures(*picture_);
}

void PointQuery::WritePoint(const tarvo::GeoCoordinate& point, std::size_t pointIndex,
                            GeoJsonWriter& writer) {
  writer.StartPoint(point);
  const bool yes = WriteAnswer(point, writer);
  writer.Property("point", pointIndex);
  writer.EndFeature();
  if (picture_) picture_->AddDot(point, yes, {{"data-point", std::to_string(pointIndex)}});
  if (yes) ++yesCount_;
  ++pointCount_;
}

}  // namespace vorel::tool
