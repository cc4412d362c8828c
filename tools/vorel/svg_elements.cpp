#include "tools/vorel/svg_elements.h"

#include "tools/vorel/plain_text.h"

namespace vorel::tool {
namespace {

/// Collects what the XML library writes.
class FragmentWriter : public pugi::xml_writer {
 public:
  explicit FragmentWriter(std::string& text) : text_(text) {}
  void write(const void* data, std::size_t size) override {
    text_.append(static_cast<const char*>(data), size);
  }

 private:
  std::string& text_;
};

}  // namespace

std::string PixelText(double value) {
  return FixedNumber(value, 2);
}

std::string ToText(const pugi::xml_document& document) {
  std::string text;
  FragmentWriter writer(text);
  document.save(writer, " ", pugi::format_indent);
  return text;
}

std::string ToText(const pugi::xml_node& node) {
  std::string text;
  FragmentWriter writer(text);
  node.print(writer, "", pugi::format_raw);
  return text;
}

void SetAttribute(pugi::xml_node node, const char* name, const std::string& value) {
  node.append_attribute(name).set_value(value.c_str());
}

void SetAttributes(pugi::xml_node node, const Attributes& attributes) {
  for (const auto& [name, value] : attributes) SetAttribute(node, name, value);
}

pugi::xml_node AppendElement(pugi::xml_node parent, const char* name, const char* elementClass) {
  pugi::xml_node node = parent.append_child(name);
  node.append_attribute("class").set_value(elementClass);
  return node;
}

void AppendRectangle(pugi::xml_node parent, const char* elementClass, double x, double y, double width,
                     double height) {
  pugi::xml_node node = AppendElement(parent, "rect", elementClass);
  SetAttribute(node, "x", PixelText(x));
  SetAttribute(node, "y", PixelText(y));
  SetAttribute(node, "width", PixelText(width));
  SetAttribute(node, "height", PixelText(height));
}

void AppendPathElement(pugi::xml_node parent, const char* elementClass, const std::string& path) {
  SetAttribute(AppendElement(parent, "path", elementClass), "d", path);
}

pugi::xml_node AppendCircle(pugi::xml_node parent, const char* elementClass, const Attributes& attributes,
                            const Pixel& centre, double radius) {
  pugi::xml_node node = AppendElement(parent, "circle", elementClass);
  SetAttributes(node, attributes);
  SetAttribute(node, "cx", PixelText(centre.x));
  SetAttribute(node, "cy", PixelText(centre.y));
  SetAttribute(node, "r", PixelText(radius));
  return node;
}

void AppendText(pugi::xml_node parent, const char* elementClass, double x, double y, const char* anchor,
                const std::string& text) {
  pugi::xml_node node = AppendElement(parent, "text", elementClass);
  SetAttribute(node, "x", PixelText(x));
  SetAttribute(node, "y", PixelText(y));
  if (anchor != nullptr) node.append_attribute("text-anchor").set_value(anchor);
  node.text().set(XmlCharacters(text).c_str());
}

std::string LinePath(double x1, double y1, double x2, double y2) {
  return "M" + PixelText(x1) + " " + PixelText(y1) + "L" + PixelText(x2) + " " + PixelText(y2);
}

}  // namespace vorel::tool
