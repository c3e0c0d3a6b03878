#include "sim/busscript.h"

#include <fstream>
#include <sstream>
#include <stdexcept>

namespace keld2::test {

namespace {

// A word, or the list that it stands for: 3*7 or 1..4
void writeout(const std::string& word, Words& list) {
    const std::size_t times = word.find('*');
    const std::size_t to = word.find("..");
    if (times != word.npos && word[0] != '$') {
        list.insert(list.end(), std::stoul(word.substr(0, times)), word.substr(times + 1));
    } else if (to != word.npos) {
        for (int i = std::stoi(word); i <= std::stoi(word.substr(to + 2)); ++i)
            list.push_back(std::to_string(i));
    } else {
        list.push_back(word);
    }
}

Words split(const std::string& text) {
    std::istringstream in(text.substr(0, text.find('#')));
    Words words;
    for (std::string word; in >> word;) writeout(word, words);
    return words;
}

// The block that a line begins; nullptr: that of the chip.
BusBlock* begin(BusScript& script, const Words& words) {
    if (words[0] == "to") return &script.routines[words.at(1)];
    if (words[0] == "case") return &script.cases.emplace_back();
    if (words[0] == "refused") return &script.refusals.emplace_back();
    if (words[0] != "chip") throw std::runtime_error("'" + words[0] + "' begins no block");
    script.chip.kind = words.at(1);
    return nullptr;
}

}  // namespace

Words expanded(const Words& words, const Words& arguments) {
    Words list;
    for (const std::string& word : words) {
        if (!word.starts_with('$')) {
            list.push_back(word);
            continue;
        }
        const std::size_t first = std::stoul(word.substr(1)) - 1;
        const std::size_t end = word.ends_with('*') ? arguments.size() : first + 1;
        for (std::size_t i = first; i < end; ++i) list.push_back(arguments.at(i));
    }
    return list;
}

void setvalue(sim::ChipSpec& chip, const Words& words) {
    const std::string& key = words[0];
    chip.values.erase(key);
    if (words.size() == 1) return;
    std::vector<std::int64_t> numbers;
    if (key == "kind")
        chip.kind = words[1];
    else if (words[1].starts_with('\''))
        chip.values[key] = words[1];
    else
        for (const std::string& word : words)
            if (&word != &key) numbers.push_back(std::stoll(word, {}, 0));
    if (numbers.size() == 1)
        chip.values[key] = numbers[0];
    else if (!numbers.empty())
        chip.values[key] = numbers;
}

BusScript readscript(const std::filesystem::path& file) {
    BusScript script;
    script.name = file.stem().string();
    script.chip.device = "test";
    std::ifstream in(file);
    BusBlock* block = nullptr;
    int number = 0;
    for (std::string line; std::getline(in, line);) {
        ++number;
        const Words words = split(line);
        if (words.empty()) continue;
        if (line[0] != ' ') {
            block = begin(script, words);
            if (block != nullptr) {
                block->title = line.substr(line.find(' ') + 1);
                block->number = number;
            }
        } else if (block != nullptr) {
            block->lines.push_back({number, words});
        } else {
            setvalue(script.chip, words);
        }
    }
    return script;
}

}  // namespace keld2::test
