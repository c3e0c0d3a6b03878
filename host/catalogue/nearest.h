// Names that somebody may have meant.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace keld2::host {

// Characters to insert, remove, change or swap with their neighbour to turn one text into the
// other.
std::size_t editdistance(std::string_view from, std::string_view to);

// Up to three of the names, nearest first; none that has little in common with the wish.
std::vector<std::string> nearestnames(std::string_view wish, const std::vector<std::string>& names);

}  // namespace keld2::host
