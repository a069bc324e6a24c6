// The middle one of measured figures, which a few disturbed ones do not move.
#pragma once

#include <algorithm>
#include <vector>

// Of at least one figure.
inline double Median(std::vector<double> figures) {
    const auto middle = figures.begin() + static_cast<std::ptrdiff_t>(figures.size() / 2);
    std::nth_element(figures.begin(), middle, figures.end());
    return *middle;
}
