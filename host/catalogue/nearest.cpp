#include "host/catalogue/nearest.h"

#include <algorithm>

namespace keld2::host {

std::size_t editdistance(std::string_view from, std::string_view to) {
    // rows of the usual table: two before, one before, current
    std::vector<std::size_t> older(to.size() + 1), old(to.size() + 1), now(to.size() + 1);
    for (std::size_t j = 0; j <= to.size(); ++j) old[j] = j;
    for (std::size_t i = 1; i <= from.size(); ++i) {
        now[0] = i;
        for (std::size_t j = 1; j <= to.size(); ++j) {
            const bool same = from[i - 1] == to[j - 1];
            now[j] = std::min({old[j] + 1, now[j - 1] + 1, old[j - 1] + (same ? 0 : 1)});
            if (i > 1 && j > 1 && from[i - 1] == to[j - 2] && from[i - 2] == to[j - 1])
                now[j] = std::min(now[j], older[j - 2] + 1);
        }
        std::swap(older, old);
        std::swap(old, now);
    }
    return old[to.size()];
}

std::vector<std::string> nearestnames(std::string_view wish,
                                      const std::vector<std::string>& names) {
    constexpr std::size_t most = 3;
    std::vector<std::pair<std::size_t, std::string>> found;
    for (const std::string& name : names) {
        const bool contained = !wish.empty() && name.find(wish) != std::string::npos;
        const std::size_t distance = contained ? 1 : editdistance(wish, name);
        if (distance * 3 <= std::max(wish.size(), name.size())) found.emplace_back(distance, name);
    }
    std::sort(found.begin(), found.end());
    std::vector<std::string> nearest;
    for (std::size_t i = 0; i < std::min(most, found.size()); ++i)
        nearest.push_back(found[i].second);
    return nearest;
}

}  // namespace keld2::host
