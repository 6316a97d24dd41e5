#pragma once

#include <string>
#include <utility>
#include <vector>

// A line chart drawn as inline SVG. Every drawn element carries a class, so
// the page's style sheet colours it, and every line its number of points in
// `data-points`, so a test can count them in the rendered page.
class SvgChart {
public:
    using Points = std::vector<std::pair<double, double>>;
    struct Axis {
        std::string label;
        double low = 0;
        double high = 1;
        bool wholeTicks = false; // counts, such as runs, have no half steps
    };

    SvgChart(std::string title, Axis x, Axis y) : title_(std::move(title)), x_(x), y_(y) {}

    // A filled area, e.g. the values that fail.
    void region(const std::string &cssClass, const std::string &label, const Points &outline);
    // A line through the points; `steps` holds each value until the next.
    void series(const std::string &cssClass, const std::string &label, const Points &points,
                bool steps = false);
    void horizontal(const std::string &cssClass, const std::string &label, double y);
    void vertical(const std::string &cssClass, const std::string &label, double x);
    // A point with its own label, e.g. the battery on the health curve.
    void marker(const std::string &cssClass, const std::string &label, double x, double y,
                const std::string &attributes = "");

    std::string render() const;

    static constexpr int kWidth = 640;
    static constexpr int kHeight = 300;

private:
    double px(double x) const;
    double py(double y) const;
    std::string axes() const;
    std::string legend() const;

    std::string title_;
    Axis x_;
    Axis y_;
    std::string body_;
    std::vector<std::pair<std::string, std::string>> legend_; // class, label
};

// Round numbers that cover [low, high] in about five steps.
std::vector<double> niceTicks(double low, double high, bool whole = false);
