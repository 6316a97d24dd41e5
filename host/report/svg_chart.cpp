#include "report/svg_chart.h"

#include <cmath>
#include <cstdio>

#include "report/html_text.h"

namespace {

constexpr double kLeft = 56, kRight = 16, kTop = 28, kBottom = 72;

std::string number(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.2f", value);
    return text;
}

std::string tickText(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%g", std::fabs(value) < 1e-9 ? 0.0 : value);
    return text;
}

} // namespace

std::vector<double> niceTicks(double low, double high, bool whole) {
    std::vector<double> ticks;
    const double span = high - low;
    if (!(span > 0)) return {low};
    const double rough = span / 5;
    const double magnitude = std::pow(10.0, std::floor(std::log10(rough)));
    double step = magnitude;
    for (const double factor : {1.0, 2.0, 2.5, 5.0, 10.0}) {
        step = factor * magnitude;
        if (whole && step != std::floor(step)) continue;
        if (span / step <= 6) break;
    }
    for (double tick = std::ceil(low / step) * step; tick <= high + step * 1e-9; tick += step) {
        ticks.push_back(tick);
    }
    return ticks;
}

double SvgChart::px(double x) const {
    const double span = x_.high - x_.low;
    return kLeft + (span > 0 ? (x - x_.low) / span : 0) * (kWidth - kLeft - kRight);
}

double SvgChart::py(double y) const {
    const double span = y_.high - y_.low;
    return kHeight - kBottom - (span > 0 ? (y - y_.low) / span : 0) * (kHeight - kTop - kBottom);
}

void SvgChart::region(const std::string &cssClass, const std::string &label,
                      const Points &outline) {
    body_ += "<polygon class=\"region " + cssClass + "\" data-points=\"" +
             std::to_string(outline.size()) + "\" points=\"";
    for (const auto &point : outline) {
        body_ += number(px(point.first)) + "," + number(py(point.second)) + " ";
    }
    body_ += "\"><title>" + escapedHtml(label) + "</title></polygon>\n";
    legend_.emplace_back("region " + cssClass, label);
}

void SvgChart::series(const std::string &cssClass, const std::string &label, const Points &points,
                      bool steps) {
    body_ += "<polyline class=\"series " + cssClass + "\" data-points=\"" +
             std::to_string(points.size()) + "\" points=\"";
    body_.reserve(body_.size() + points.size() * 24);
    for (size_t i = 0; i < points.size(); ++i) {
        if (steps && i > 0) {
            body_ += number(px(points[i].first)) + "," + number(py(points[i - 1].second)) + " ";
        }
        body_ += number(px(points[i].first)) + "," + number(py(points[i].second)) + " ";
    }
    body_ += "\"><title>" + escapedHtml(label) + "</title></polyline>\n";
    legend_.emplace_back("series " + cssClass, label);
}

void SvgChart::horizontal(const std::string &cssClass, const std::string &label, double y) {
    body_ += "<line class=\"rule " + cssClass + "\" x1=\"" + number(kLeft) + "\" x2=\"" +
             number(kWidth - kRight) + "\" y1=\"" + number(py(y)) + "\" y2=\"" + number(py(y)) +
             "\"><title>" + escapedHtml(label) + "</title></line>\n";
    legend_.emplace_back("rule " + cssClass, label);
}

void SvgChart::vertical(const std::string &cssClass, const std::string &label, double x) {
    body_ += "<line class=\"rule " + cssClass + "\" x1=\"" + number(px(x)) + "\" x2=\"" +
             number(px(x)) + "\" y1=\"" + number(kTop) + "\" y2=\"" + number(kHeight - kBottom) +
             "\"><title>" + escapedHtml(label) + "</title></line>\n";
    const bool flip = px(x) > kWidth * 0.7;
    body_ += "<text class=\"rule-label\" text-anchor=\"" + std::string(flip ? "end" : "start") +
             "\" x=\"" + number(px(x) + (flip ? -3 : 3)) + "\" y=\"" + number(kTop + 10) + "\">" +
             escapedHtml(label) + "</text>\n";
}

void SvgChart::marker(const std::string &cssClass, const std::string &label, double x, double y,
                      const std::string &attributes) {
    body_ += "<circle class=\"marker " + cssClass + "\" cx=\"" + number(px(x)) + "\" cy=\"" +
             number(py(y)) + "\" r=\"5\" " + attributes + "><title>" + escapedHtml(label) +
             "</title></circle>\n";
    // A label near the right edge stands to the left of its point.
    const bool flip = px(x) > kWidth * 0.7;
    body_ += "<text class=\"marker-label\" text-anchor=\"" + std::string(flip ? "end" : "start") +
             "\" x=\"" + number(px(x) + (flip ? -8 : 8)) + "\" y=\"" + number(py(y) - 8) + "\">" +
             escapedHtml(label) + "</text>\n";
}

std::string SvgChart::axes() const {
    std::string out = "<g class=\"axes\">";
    const double bottom = kHeight - kBottom;
    out += "<line x1=\"" + number(kLeft) + "\" y1=\"" + number(bottom) + "\" x2=\"" +
           number(kWidth - kRight) + "\" y2=\"" + number(bottom) + "\"/>";
    out += "<line x1=\"" + number(kLeft) + "\" y1=\"" + number(kTop) + "\" x2=\"" + number(kLeft) +
           "\" y2=\"" + number(bottom) + "\"/>";
    for (const double tick : niceTicks(x_.low, x_.high, x_.wholeTicks)) {
        out += "<text class=\"tick\" text-anchor=\"middle\" x=\"" + number(px(tick)) + "\" y=\"" +
               number(bottom + 14) + "\">" + tickText(tick) + "</text>";
    }
    for (const double tick : niceTicks(y_.low, y_.high, y_.wholeTicks)) {
        out += "<line class=\"grid\" x1=\"" + number(kLeft) + "\" x2=\"" + number(kWidth - kRight) +
               "\" y1=\"" + number(py(tick)) + "\" y2=\"" + number(py(tick)) + "\"/>";
        out += "<text class=\"tick\" text-anchor=\"end\" x=\"" + number(kLeft - 4) + "\" y=\"" +
               number(py(tick) + 4) + "\">" + tickText(tick) + "</text>";
    }
    out += "<text class=\"axis-label\" text-anchor=\"middle\" x=\"" +
           number((kLeft + kWidth - kRight) / 2) + "\" y=\"" + number(bottom + 30) + "\">" +
           escapedHtml(x_.label) + "</text>";
    out += "<text class=\"axis-label\" text-anchor=\"middle\" transform=\"translate(14 " +
           number((kTop + bottom) / 2) + ") rotate(-90)\">" + escapedHtml(y_.label) + "</text>";
    return out + "</g>\n";
}

// The keys run in rows under the chart, a second row when the first is full.
std::string SvgChart::legend() const {
    std::string out = "<g class=\"legend\">";
    double x = kLeft;
    double y = kHeight - 22;
    for (const auto &entry : legend_) {
        const double width = 28 + 6.2 * static_cast<double>(entry.second.size());
        if (x > kLeft && x + width > kWidth) {
            x = kLeft;
            y += 15;
        }
        out += "<rect class=\"key " + entry.first + "\" x=\"" + number(x) + "\" y=\"" +
               number(y - 9) + "\" width=\"12\" height=\"10\"/>";
        out += "<text x=\"" + number(x + 16) + "\" y=\"" + number(y) + "\">" +
               escapedHtml(entry.second) + "</text>";
        x += width;
    }
    return out + "</g>\n";
}

std::string SvgChart::render() const {
    std::string out = "<svg class=\"chart\" xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 " +
                      std::to_string(kWidth) + " " + std::to_string(kHeight) +
                      "\" role=\"img\" aria-label=\"" + escapedHtml(title_) + "\">\n";
    out += "<text class=\"chart-title\" x=\"" + number(kLeft) + "\" y=\"18\">" +
           escapedHtml(title_) + "</text>\n";
    out += axes();
    out += "<g class=\"plot\">\n" + body_ + "</g>\n";
    out += legend();
    return out + "</svg>\n";
}
