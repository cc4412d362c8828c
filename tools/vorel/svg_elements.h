#ifndef VOREL_TOOLS_VOREL_SVG_ELEMENTS_H_
#define VOREL_TOOLS_VOREL_SVG_ELEMENTS_H_

#include <pugixml.hpp>
#include <string>
#include <utility>
#include <vector>

#include "tools/vorel/map_projection.h"

namespace vorel::tool {

// Elements of an SVG picture, made and written by the XML library so that everything is escaped.

/// A coordinate or length as a picture spells it: hundredths of a pixel.
std::string PixelText(double value);

/// The whole document, indented.
std::string ToText(const pugi::xml_document& document);

/// One element on one line.
std::string ToText(const pugi::xml_node& node);

void SetAttribute(pugi::xml_node node, const char* name, const std::string& value);

/// Names such as "data-line" with values.
using Attributes = std::vector<std::pair<const char*, std::string>>;
void SetAttributes(pugi::xml_node node, const Attributes& attributes);

pugi::xml_node AppendElement(pugi::xml_node parent, const char* name, const char* elementClass);

void AppendRectangle(pugi::xml_node parent, const char* elementClass, double x, double y, double width,
                     double height);

/// @param path  path data, such as that of `LinePath`
void AppendPathElement(pugi::xml_node parent, const char* elementClass, const std::string& path);

pugi::xml_node AppendCircle(pugi::xml_node parent, const char* elementClass, const Attributes& attributes,
                            const Pixel& centre, double radius);

/// @param anchor  "start", "middle" or "end", which part of the text is at (x, y); null is "start"
void AppendText(pugi::xml_node parent, const char* elementClass, double x, double y, const char* anchor,
                const std::string& text);

/// Path data of one stroke.
std::string LinePath(double x1, double y1, double x2, double y2);

}  // namespace vorel::tool

#endif  // VOREL_TOOLS_VOREL_SVG_ELEMENTS_H_
