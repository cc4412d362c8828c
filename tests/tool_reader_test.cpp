#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "support/program_runner.h"
#include "tools/vorel/failure.h"
#include "tools/vorel/geojson_coordinates.h"
#include "tools/vorel/geojson_reader.h"
#include "tools/vorel/map_clipping.h"
#include "tools/vorel/map_projection.h"
#include "tools/vorel/plain_text.h"
#include "tools/vorel/spool.h"
#include "tools/vorel/text_source.h"
#include "tools/vorel/view.h"

namespace vorel::test {
namespace {

using tarvo::GeoCoordinate;
using namespace vorel::tool;

/// Reads all lines twice; returns how many points there are, or -1 when the text is refused.
int PointsIn(const std::string& text, std::string* message = nullptr) {
  TextSource source = TextSource::FromMemory("text", text);
  GeoJsonReader reader(source);
  int points[2] = {0, 0};
  try {
    for (int& pass : points) {
      std::vector<GeoCoordinate> line;
      reader.ForEachGeometry([&](const Geometry& geometry) {
        ForEachLine(geometry, line, [&] {
          for (const GeoCoordinate& point : line) {
            EXPECT_LE(std::fabs(point.latitude), 90.0);
            EXPECT_LE(std::fabs(point.longitude), 360.0);
          }
          pass += static_cast<int>(line.size());
        });
      });
    }
  } catch (const BadInput& problem) {
    EXPECT_EQ(std::string(problem.what()).rfind("text", 0), 0u) << problem.what();
    if (message != nullptr) *message = problem.what();
    return -1;
  }
  EXPECT_EQ(points[0], points[1]);
  return points[0];
}

const std::string kSamples[] = {
    R"({"type":"FeatureCollection","features":[{"type":"Feature","properties":{"n":"\u00e4ö","v":[true,null]},)"
    R"("geometry":{"type":"LineString","coordinates":[[1.5,2e0],[-3,4,5.25]]}},{"type":"Feature","geometry":)"
    R"({"type":"GeometryCollection","geometries":[{"type":"MultiLineString","coordinates":[[[1,2],[3,4]]]}]}}]})",
    "{\"type\":\"LineString\",\"coordinates\":[[1,2],[3,4]]}\r\n\n{\"type\":\"Feature\",\"geometry\":null}\n"
    "{\"type\":\"LineString\",\"coordinates\":[[5,6],[7,8]]}",
    "\x1E{\"type\":\"LineString\",\"coordinates\":[[1,2],\n[3,4]]}\n\x1E{\"type\":\"Point\",\"coordinates\":["
    "1,2]}\n"};

TEST(GeoJsonReaderTest, ReadsTheSamples) {
  EXPECT_EQ(PointsIn(kSamples[0]), 4);
  EXPECT_EQ(PointsIn(kSamples[1]), 4);
  EXPECT_EQ(PointsIn(kSamples[2]), 2);
}

TEST(GeoJsonReaderTest, SurvivesTruncationAtEveryByte) {
  for (const std::string& sample : kSamples) {
    int refused = 0;
    for (std::size_t length = 0; length < sample.size(); ++length)
      refused += PointsIn(sample.substr(0, length)) < 0;
    EXPECT_GT(refused, static_cast<int>(sample.size()) / 3);
  }
}

TEST(GeoJsonReaderTest, SurvivesEveryKindOfByteAtEveryPlace) {
  for (const std::string& sample : kSamples) {
    for (std::size_t place = 0; place < sample.size(); ++place) {
      SCOPED_TRACE(place);
      for (const char byte :
           {'\0', '\n', ' ', '"', '\\', '[', ']', '{', '}', ',', '-', '9', 'e', '\x1E', '\x80', '\xFF'}) {
        std::string changed = sample;
        changed[place] = byte;
        PointsIn(changed);
      }
      std::string missing = sample;
      missing.erase(place, 1);
      PointsIn(missing);
      std::string doubled = sample;
      doubled.insert(place, 1, sample[place]);
      PointsIn(doubled);
    }
  }
}

TEST(GeoJsonReaderTest, SurvivesRandomChangesOfTheSampleFile) {
  constexpr unsigned kSeed = 7;  // fixed: a red run can be replayed
  const std::string sample = FileText(std::string(VOREL_SAMPLES_DIR) + "/city_drive.geojson");
  ASSERT_GT(PointsIn(sample), 100);
  std::mt19937 generator(kSeed);
  std::uniform_int_distribution<std::size_t> place(0, sample.size() - 1);
  std::uniform_int_distribution<int> byte(0, 255);
  int refused = 0;
  for (int run = 0; run < 2000; ++run) {
    SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", run " << run);
    std::string changed = sample;
    for (int change = 0; change <= run % 4; ++change)
      changed[place(generator)] = static_cast<char>(byte(generator));
    refused += PointsIn(changed) < 0;
  }
  EXPECT_GT(refused, 1000);
}

TEST(GeoJsonReaderTest, NamesThePlaceInALongMessageOnce) {
  std::string message;
  EXPECT_EQ(
      PointsIn(R"({"type":"LineString","coordinates":[[1,2],")" + std::string(500, 'x') + "\"]}", &message),
      -1);
  EXPECT_LT(message.size(), 200u) << "values are shortened";
}

TEST(ViewTest, IsReadAsContinuousLongitudes) {
  const GeoRect plain = ParseView("7.5,43,8,44.25", "--view");
  EXPECT_EQ(plain.min, GeoCoordinate(7.5, 43.0));
  EXPECT_EQ(plain.max, GeoCoordinate(8.0, 44.25));
  const GeoRect across = ParseView("179,-5,-178,5", "--view");
  EXPECT_EQ(across.min.longitude, 179.0);
  EXPECT_EQ(across.max.longitude, 182.0);
  const GeoRect world = ParseView("-180,-90,180,90", "--view");
  EXPECT_EQ(world.min.longitude, -180.0);
  EXPECT_EQ(world.max.longitude, 180.0);
  const GeoRect turned = ParseView(" 350, 1 ,+10,2", "--view");
  EXPECT_EQ(turned.min.longitude, -10.0);
  EXPECT_EQ(turned.max.longitude, 10.0);
  const GeoRect point = ParseView("7,43,7,43", "--view");
  EXPECT_EQ(point.min, point.max);
  EXPECT_EQ(ViewText(across), "179,-5,-178,5");
}

TEST(ViewTest, UnwrappingTakesEachStepTheShortWay) {
  std::vector<GeoCoordinate> line = {{170, 0}, {-175, 0}, {-10, 0}, {175, 0}, {175, 1}, {-5, 0}};
  UnwrapLongitudes(line);
  const double expected[] = {170, 185, 350, 175, 175, -5};  // the steps of 185 degrees go the other way
  for (std::size_t i = 0; i < line.size(); ++i) EXPECT_EQ(line[i].longitude, expected[i]) << i;
}

TEST(ViewTest, TurnsIntoViewFindsEveryTurn) {
  const GeoRect view{{170.0, 0.0}, {190.0, 1.0}};
  const auto turns = [&](double west, double east) {
    return TurnsIntoView({{west, 0.0}, {east, 1.0}}, view);
  };
  EXPECT_EQ(turns(171.0, 172.0), std::vector<int>{0});
  EXPECT_EQ(turns(-179.0, -175.0), std::vector<int>{1});
  EXPECT_EQ(turns(190.0, 200.0), std::vector<int>{0}) << "touching counts";
  EXPECT_EQ(turns(-170.0, -160.0), std::vector<int>{1});
  EXPECT_EQ(turns(0.0, 10.0), std::vector<int>{});
  EXPECT_EQ(turns(-180.0, 180.0), (std::vector<int>{0, 1}));
  EXPECT_EQ(turns(0.0, 720.0), (std::vector<int>{-1, 0}));
}

TEST(ViewTest, BoundsOfLinesAcrossTheAntimeridianStaySmall) {
  BoundsCollector bounds;
  EXPECT_TRUE(bounds.empty());
  bounds.Add({{178.0, 10.0}, {181.0, 20.0}});
  bounds.Add({{-178.0, 0.0}, {-176.0, 10.0}});
  const GeoRect view = bounds.HalvedAboutCentre();  // of 178..184 by 0..20
  EXPECT_EQ(view.min, GeoCoordinate(179.5, 5.0));
  EXPECT_EQ(view.max, GeoCoordinate(182.5, 15.0));
}

TEST(PlainTextTest, OneLineEscapesWhatIsNoText) {
  EXPECT_EQ(OneLine("a\nb\tc\x7F"), "a\\x0ab\\x09c\\x7f");
  EXPECT_EQ(OneLine("\xC3\xA4 \xE2\x82\xAC \xF0\x9F\x98\x80"), "\xC3\xA4 \xE2\x82\xAC \xF0\x9F\x98\x80");
  EXPECT_EQ(OneLine("\xC3"), "\\xc3");
  EXPECT_EQ(OneLine("\xC0\x80"), "\\xc0\\x80") << "an overlong form";
  EXPECT_EQ(OneLine("\xED\xA0\x80"), "\\xed\\xa0\\x80") << "a surrogate";
  EXPECT_EQ(OneLine("\xC2\x85|\xE2\x80\xA8"), "\\xc2\\x85|\\xe2\\x80\\xa8") << "line ends of other kinds";
}

TEST(PlainTextTest, XmlCharactersReplacesWhatXmlCannotHold) {
  EXPECT_EQ(XmlCharacters("a<\x01\xFF\xEF\xBF\xBF>"), "a<\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD>");
}

TEST(PlainTextTest, ShortenKeepsBothEnds) {
  EXPECT_EQ(Shorten("abcdef", 6), "abcdef");
  EXPECT_EQ(Shorten("abcdefg", 6),
            "abc\xE2\x80\xA6"
            "fg");
  EXPECT_EQ(Shorten("\xC3\xA4\xC3\xA4\xC3\xA4\xC3\xA4", 3), "\xC3\xA4\xE2\x80\xA6\xC3\xA4");
}

TEST(PlainTextTest, NumbersReadBackAsThemselves) {
  EXPECT_EQ(ShortestNumber(0.1), "0.1");
  EXPECT_EQ(ShortestNumber(-0.0), "0");
  EXPECT_EQ(ShortestNumber(1e300), "1e+300");
  EXPECT_EQ(FixedNumber(-0.001, 2), "0.00");
  EXPECT_EQ(FixedNumber(-1.005, 1), "-1.0");
  EXPECT_EQ(Counted(1, "symbol"), "1 symbol");
  EXPECT_EQ(Counted(1234567, "symbol"),
            "1\xE2\x80\xAF"
            "234\xE2\x80\xAF"
            "567 symbols");
}

TEST(SpoolTest, GivesBackWhatItTookInMemoryAndBeyond) {
  Spool spool;
  std::string expected;
  for (int i = 0; i < 60000; ++i) {
    const std::string text = std::to_string(i) + std::string(static_cast<std::size_t>(i % 100), '.');
    spool.Append(text);
    expected += text;
  }
  ASSERT_GT(expected.size(), std::size_t{3} << 20);
  std::string copy;
  spool.CopyTo([&](std::string_view text) { copy += text; });
  EXPECT_EQ(copy, expected);
  std::string part(1000, '\0');
  for (const std::size_t offset : {std::size_t{0}, std::size_t{2097000}, expected.size() - 400}) {
    const std::size_t count = spool.ReadAt(offset, part.data(), part.size());
    EXPECT_EQ(part.substr(0, count), expected.substr(offset, 1000));
  }
}

TEST(MapProjectionTest, RoundNumbersAreOneTwoAndFive) {
  EXPECT_EQ(RoundNumberUpTo(1.0), 1.0);
  EXPECT_EQ(RoundNumberUpTo(1999.0), 1000.0);
  EXPECT_EQ(RoundNumberUpTo(4.9), 2.0);
  EXPECT_EQ(RoundNumberUpTo(0.5), 0.5);
  EXPECT_EQ(RoundNumberUpTo(99.0), 50.0);
  EXPECT_EQ(LengthText(500.0), "500 m");
  EXPECT_EQ(LengthText(2000.0), "2 km");
}

TEST(MapProjectionTest, TicksLieInTheMapAndNameTheirPlace) {
  for (const GeoRect& view : {GeoRect{{7.41, 43.72}, {7.43, 43.74}}, GeoRect{{178.0, -1.0}, {183.0, 2.0}},
                              GeoRect{{-180.0, -90.0}, {180.0, 90.0}}, GeoRect{{7.0, 43.0}, {7.0, 43.0}}}) {
    const MapProjection projection(view);
    for (const Tick& tick : projection.LongitudeTicks()) {
      EXPECT_GE(tick.pixel, -1e-6);
      EXPECT_LE(tick.pixel, projection.width() + 1e-6);
    }
    for (const Tick& tick : projection.LatitudeTicks()) {
      EXPECT_GE(tick.pixel, -1e-6);
      EXPECT_LE(tick.pixel, projection.height() + 1e-6);
    }
    EXPECT_GE(projection.LongitudeTicks().size(), 3u);
    EXPECT_GE(projection.LatitudeTicks().size(), 3u);
    EXPECT_LE(projection.LongitudeTicks().size(), 20u);
    const Pixel centre = projection.ToPixel(
        {(view.min.longitude + view.max.longitude) / 2.0, (view.min.latitude + view.max.latitude) / 2.0});
    EXPECT_EQ(centre.x, projection.width() / 2.0);
    EXPECT_EQ(centre.y, projection.height() / 2.0);
  }
}

TEST(MapClippingTest, CutsLinesAndRingsAtTheBox) {
  const PixelBox box{0.0, 0.0, 10.0, 10.0};
  EXPECT_EQ(ClippedLinePath({{-5.0, 5.0}, {5.0, 5.0}, {5.0, 20.0}, {8.0, 20.0}, {8.0, 5.0}}, box),
            "M0.00 5.00L5.00 5.00L5.00 10.00M8.00 10.00L8.00 5.00");
  EXPECT_EQ(ClippedLinePath({{-5.0, 5.0}, {50.0, 5.0}}, box), "M0.00 5.00L10.00 5.00");
  EXPECT_EQ(ClippedLinePath({{-5.0, -1.0}, {50.0, -1.0}}, box), "");
  EXPECT_EQ(ClippedLinePath({{1.0, 1.0}, {1.1, 1.0}, {1.2, 1.0}}, box), "M1.00 1.00L1.20 1.00")
      << "the end stays";
  EXPECT_EQ(ClippedLinePath({{1.0, 1.0}, {1.0, 1.0}}, box), "M1.00 1.00L1.00 1.00");
  EXPECT_EQ(ClippedRingPath({{-5.0, -5.0}, {5.0, -5.0}, {5.0, 5.0}, {-5.0, 5.0}}, box),
            "M5.00 0.00L5.00 5.00L0.00 5.00L0.00 0.00Z");
  EXPECT_EQ(ClippedRingPath({{20.0, 0.0}, {30.0, 0.0}, {30.0, 5.0}}, box), "");
}

}  // namespace
}  // namespace vorel::test
