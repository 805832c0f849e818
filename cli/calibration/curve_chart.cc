// The picture of a table of curves: two diagrams of four curves side by side, since all eight in
// one would hide each other.
#include <array>
#include <cstdint>
#include <cstdio>
#include <pugixml.hpp>
#include <span>
#include <sstream>
#include <string>

#include "cli/calibration/curve_tables.h"

namespace ia::cli {
namespace {

constexpr int kWidth = 1000;
constexpr int kHeight = 600;
constexpr int kPlotSize = 400;
constexpr int kPlotTop = 84;
constexpr int kPlotBottom = kPlotTop + kPlotSize;
constexpr int kTop = IA_CALIB_LEVEL_COUNT - 1;
constexpr std::size_t kCurvesOfSet = IA_CALIB_CURVE_COUNT / 2;

constexpr auto kTicks = std::to_array<int>({0, 256, 512, 768, kTop});

struct Panel {
  const char* title;
  int left;
  std::size_t first_curve;
};

constexpr auto kPanels = std::to_array<Panel>({
    {"First curve set", 80, 0},
    {"Second curve set", 570, kCurvesOfSet},
});

// The dashes of a curve leave gaps in which equal curves beneath it show: where all four are equal,
// their colours take turns.
constexpr char kStyle[] = R"(
svg { background: #ffffff; font-family: sans-serif; font-size: 14px; }
.ground { fill: #ffffff; }
text { fill: #1f2430; }
.heading { font-size: 20px; font-weight: bold; }
.panel { font-size: 16px; }
.grid { stroke: #d7dbe2; stroke-width: 1; }
.axis { stroke: #5b6370; stroke-width: 1.5; fill: none; }
.curve { fill: none; stroke-width: 2.5; }
.c0 { stroke: #1d5fbf; }
.c1 { stroke: #c2410c; stroke-dasharray: 12 4; }
.c2 { stroke: #15803d; stroke-dasharray: 8 8; }
.c3 { stroke: #a21caf; stroke-dasharray: 4 12; }
@media (prefers-color-scheme: dark) {
  svg { background: #16181d; }
  .ground { fill: #16181d; }
  text { fill: #e6e9ef; }
  .grid { stroke: #343a45; }
  .axis { stroke: #a3abb8; }
  .c0 { stroke: #6ea8ff; }
  .c1 { stroke: #fb923c; }
  .c2 { stroke: #4ade80; }
  .c3 { stroke: #e879f9; }
}
)";

using Node = pugi::xml_node;

void Set(Node& node, const char* name, const auto& value) { node.append_attribute(name) = value; }

Node AddText(Node& parent, int x, int y, const char* anchor, const std::string& text) {
  Node node = parent.append_child("text");
  Set(node, "x", x);
  Set(node, "y", y);
  Set(node, "text-anchor", anchor);
  node.text() = text.c_str();
  return node;
}

void AddLine(Node& parent, const char* style, int x1, int y1, int x2, int y2) {
  Node node = parent.append_child("line");
  Set(node, "class", style);
  Set(node, "x1", x1);
  Set(node, "y1", y1);
  Set(node, "x2", x2);
  Set(node, "y2", y2);
}

[[nodiscard]] int OnPlot(int level) { return (level * kPlotSize + kTop / 2) / kTop; }

void AddAxes(Node& diagram, const Panel& panel) {
  const int left = panel.left;
  const int right = left + kPlotSize;
  for (const int tick : kTicks) {
    const int x = left + OnPlot(tick);
    const int y = kPlotBottom - OnPlot(tick);
    AddLine(diagram, "grid", x, kPlotTop, x, kPlotBottom);
    AddLine(diagram, "grid", left, y, right, y);
    AddText(diagram, x, kPlotBottom + 20, "middle", std::to_string(tick));
    AddText(diagram, left - 8, y + 5, "end", std::to_string(tick));
  }
  AddLine(diagram, "axis", left, kPlotBottom, right, kPlotBottom);
  AddLine(diagram, "axis", left, kPlotTop, left, kPlotBottom);
  AddText(diagram, left + kPlotSize / 2, kPlotBottom + 44, "middle", "input level");
  const int x = left - 50;
  const int y = kPlotTop + kPlotSize / 2;
  Node label = AddText(diagram, x, y, "middle", "output level");
  Set(label, "transform",
      ("rotate(-90 " + std::to_string(x) + " " + std::to_string(y) + ")").c_str());
}

[[nodiscard]] std::string Style(std::size_t curve_of_set) {
  return "curve c" + std::to_string(curve_of_set);
}

void AddCurve(Node& diagram, const Panel& panel, std::size_t curve_of_set,
              std::span<const std::uint16_t> curve) {
  constexpr double kStep = static_cast<double>(kPlotSize) / kTop;
  std::string points;
  char point[32];
  for (std::size_t level = 0; level < curve.size(); ++level) {
    std::snprintf(point, sizeof point, "%.1f,%.1f ",
                  panel.left + kStep * static_cast<double>(level),
                  kPlotBottom - kStep * curve[level]);
    points += point;
  }
  points.pop_back();
  Node line = diagram.append_child("polyline");
  Set(line, "class", Style(curve_of_set).c_str());
  Set(line, "points", points.c_str());
}

void AddLegendEntry(Node& diagram, const Panel& panel, std::size_t curve_of_set) {
  constexpr int kLineLength = 28;
  constexpr int kEntryWidth = 106;
  const int x = panel.left + static_cast<int>(curve_of_set) * kEntryWidth;
  const int y = kHeight - 32;
  AddLine(diagram, Style(curve_of_set).c_str(), x, y, x + kLineLength, y);
  AddText(diagram, x + kLineLength + 6, y + 5, "start",
          "curve " + std::to_string(panel.first_curve + curve_of_set));
}

void AddPanel(Node& svg, const Panel& panel, const CurveTable& table) {
  Node diagram = svg.append_child("g");
  Node title = AddText(diagram, panel.left + kPlotSize / 2, kPlotTop - 14, "middle", panel.title);
  Set(title, "class", "panel");
  AddAxes(diagram, panel);
  for (std::size_t i = 0; i < kCurvesOfSet; ++i) {
    AddCurve(diagram, panel, i, table.Curve(panel.first_curve + i));
    AddLegendEntry(diagram, panel, i);
  }
}

void AddGround(Node& svg) {
  Node ground = svg.append_child("rect");
  Set(ground, "class", "ground");
  Set(ground, "width", kWidth);
  Set(ground, "height", kHeight);
}

}  // namespace

std::string FormatSvg(const CurveTable& table) {
  const std::string heading = std::string("Default calibration curves: ") + table.name;
  pugi::xml_document document;
  Node svg = document.append_child("svg");
  Set(svg, "xmlns", "http://www.w3.org/2000/svg");
  Set(svg, "viewBox", ("0 0 " + std::to_string(kWidth) + " " + std::to_string(kHeight)).c_str());
  Set(svg, "role", "img");
  svg.append_child("title").text() = heading.c_str();
  svg.append_child("style").text() = kStyle;
  AddGround(svg);
  Node text = AddText(svg, kWidth / 2, 36, "middle", heading);
  Set(text, "class", "heading");
  for (const Panel& panel : kPanels) AddPanel(svg, panel, table);
  std::ostringstream out;
  document.save(out, "  ");
  return out.str();
}

}  // namespace ia::cli
