// Files, for who types the name of one.
#pragma once

#include <string>

class CCandidates;

// Offers what is in a folder, sorted; hidden files only where a dot is typed.
// `folder` is what stands before the name: empty, or with a "/" at its end.
void OfferFiles(CCandidates& candidates, const std::string& folder);
