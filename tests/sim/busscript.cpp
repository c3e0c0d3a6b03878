#include "sim/busscript.h"

#include <fstream>
#include <sstream>
#include <stdexcept>

namespace keld2::test {

namespace {

Words split(const std::string& text) {
    std::istringstream in(text.substr(0, text.find('#')));
    Words words;
    for (std::string word; in >> word;) words.push_back(word);
    return words;
}

// 3*7 and 1..4
void writeout(const std::string& word, Words& list) {
    const std::size_t times = word.find('*');
    const std::size_t to = word.find("..");
    if (times != word.npos) {
        list.insert(list.end(), std::stoul(word.substr(0, times)), word.substr(times + 1));
    } else if (to != word.npos) {
        for (int i = std::stoi(word); i <= std::stoi(word.substr(to + 2)); ++i)
            list.push_back(std::to_string(i));
    } else {
        list.push_back(word);
    }
}

// The block that a line begins.
BusBlock& begin(BusScript& script, const std::string& kind, const std::string& title) {
    if (kind == "to") return script.routines[split(title).at(0)];
    if (kind == "case") return script.cases.emplace_back();
    if (kind == "refused") return script.refusals.emplace_back();
    throw std::runtime_error("'" + kind + "' begins no block");
}

}  // namespace

Words expanded(const Words& words, const Words& arguments) {
    Words list;
    for (const std::string& word : words) {
        if (!word.starts_with('$')) {
            writeout(word, list);
            continue;
        }
        const std::size_t first = std::stoul(word.substr(1)) - 1;
        const std::size_t end = word.ends_with('*') ? arguments.size() : first + 1;
        for (std::size_t i = first; i < end; ++i) list.push_back(arguments.at(i));
    }
    return list;
}

void setvalue(sim::ChipSpec& chip, const Words& words) {
    std::vector<std::int64_t> numbers;
    if (words.at(0) == "kind") {
        chip.kind = words.at(1);
        return;
    }
    chip.values.erase(words[0]);
    if (words.size() < 2) return;
    if (words[1].starts_with('\'')) {
        chip.values[words[0]] = words[1];
        return;
    }
    for (std::size_t i = 1; i < words.size(); ++i) numbers.push_back(std::stoll(words[i], {}, 0));
    if (numbers.size() == 1)
        chip.values[words[0]] = numbers[0];
    else
        chip.values[words[0]] = numbers;
}

BusScript readscript(const std::filesystem::path& file) {
    BusScript script;
    script.name = file.stem().string();
    script.chip.device = "test";
    std::ifstream in(file);
    BusBlock* block = nullptr;  // nullptr: the lines are the chip's
    int number = 0;
    for (std::string line; std::getline(in, line);) {
        ++number;
        const Words words = split(line);
        if (words.empty()) continue;
        if (line[0] == ' ') {
            if (block != nullptr)
                block->lines.push_back({number, words});
            else
                setvalue(script.chip, words);
            continue;
        }
        const std::string title = line.substr(std::min(words[0].size() + 1, line.size()));
        block = nullptr;
        if (words[0] == "chip") {
            script.chip.kind = title;
            continue;
        }
        block = &begin(script, words[0], title);
        block->title = title;
        block->number = number;
    }
    return script;
}

}  // namespace keld2::test
