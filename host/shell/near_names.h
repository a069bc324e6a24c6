// The names that somebody who mistyped one may have meant.
#pragma once

#include <string>
#include <vector>

// Those of `names` that are nearest to `word`, three at the most: one letter
// missing, surplus, wrong or swapped with the next, in longer words two; then those
// that begin with it. Upper and lower case are the same here.
std::vector<std::string> NearNames(const std::string& word, const std::vector<std::string>& names);

// A question for the end of an error, "did you mean probe or prove?"; empty when
// no name is near.
std::string DidYouMean(const std::string& word, const std::vector<std::string>& names);
