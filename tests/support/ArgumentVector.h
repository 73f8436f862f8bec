// Command lines as main() gets them.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace consolidator::test {

/// Holds words, and null-terminated pointers to them.
class ArgumentVector {
public:
    /// `words` begin with the program's name.
    explicit ArgumentVector(std::vector<std::string> words) : words_(std::move(words)) {
        pointers_.reserve(words_.size() + 1);
        for (std::string& word : words_) {
            pointers_.push_back(word.data());
        }
        pointers_.push_back(nullptr);
    }
    ArgumentVector(const ArgumentVector&) = delete;
    ArgumentVector& operator=(const ArgumentVector&) = delete;

    int count() const { return static_cast<int>(words_.size()); }
    char* const* pointers() const { return pointers_.data(); }

private:
    std::vector<std::string> words_;
    std::vector<char*> pointers_;
};

} // namespace consolidator::test
