#include "inspect/check/KernelXmlLook.h"

#include "consolidated/Diagnostic.h"
#include "query/NameDistance.h"
#include "shared/Numbers.h"
#include "shared/schemas/KernelDescription.h"
#include "shared/schemas/XmlReader.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <fstream>
#include <map>
#include <span>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

namespace consolidator::inspect {

namespace {

// What a run takes of the document: see readers/KernelFile.h. The first three elements only lead to
// the others.
constexpr std::array<std::string_view, 5> takenElements{"platform", "device", "core", "kernel",
                                                        "arg"};
constexpr std::span<const std::string_view> takenContents = std::span(takenElements).last(2);
constexpr std::array<std::string_view, 2> takenOfArguments{"name", "type"};

bool isAmong(std::span<const std::string_view> names, std::string_view name) {
    return std::ranges::find(names, name) != names.end();
}

bool isTaken(std::string_view element, std::string_view attribute) {
    return (element == "arg" && isAmong(takenOfArguments, attribute)) ||
           (element == "kernel" && attribute == "name");
}

/// The known name that was meant by this one: not more than a quarter of the characters, and at
/// most three, are others. Empty if there is none.
template <typename Row>
std::string_view meantBy(std::string_view name, std::span<const Row> known) {
    constexpr std::size_t mostChanges = 3;
    std::string_view nearest;
    std::size_t least = mostChanges + 1;
    for (const Row& row : known) {
        const std::size_t longer = std::max(name.size(), row.name.size());
        const std::size_t limit = std::min(longer / 4, mostChanges);
        if (longer > longestComparedName) {
            continue;
        }
        const std::size_t changes = editDistance(name, row.name, limit);
        if (changes <= limit && changes < least) {
            least = changes;
            nearest = row.name;
        }
    }
    return nearest;
}

std::string timesText(std::uint64_t count) {
    return inWords(count, "time");
}

/// Whether the name is XML's own, or has a prefix: such attributes are in no schema of elements.
bool isOfNamespaces(std::string_view attribute) {
    return attribute == "xmlns" || attribute.find(':') != attribute.npos;
}

/// Gathers what is odd about a document, by its names.
class Look final : public lmx60::DocumentWatcher {
public:
    void onElement(const Element& element, std::uint64_t line,
                   std::span<const std::string_view> attributes) override {
        std::array<std::string_view, takenOfArguments.size()> missing = takenOfArguments;
        const auto notice = [&missing](std::string_view name) {
            std::ranges::replace(missing, name, std::string_view());
        };
        for (const std::string_view name : attributes) {
            const auto known = element.kind.attributes;
            if (std::ranges::find(known, name, &lmx60::AttributeRow::name) != known.end()) {
                notice(name);
            } else if (isOfNamespaces(name)) {
                continue;
            } else if (const Seen* seen = count(Oddity::UnknownAttribute, element, name, line)) {
                notice(seen->meant); // which is said, and so need not be missed
            }
        }
        for (const std::string_view name : missing) {
            if (element.name == "arg" && !name.empty()) {
                count(Oddity::MissingAttribute, element, name, line);
            }
        }
    }

    void onUnknownElement(const Element& parent, std::uint64_t line,
                          std::string_view name) override {
        count(Oddity::UnknownElement, parent, name, line);
    }

    void report(const std::string& path, Findings& findings) const {
        std::vector<const std::pair<const Name, Seen>*> inOrder;
        for (const auto& oddity : seen_) {
            inOrder.push_back(&oddity);
        }
        std::ranges::stable_sort(inOrder, {},
                                 [](const auto* oddity) { return oddity->second.line; });
        for (const auto* oddity : inOrder) {
            const auto& [name, seen] = *oddity;
            const bool isMissing = std::get<Oddity>(name) == Oddity::MissingAttribute;
            findings.add({path, seen.line, severityOf(name, seen.meant),
                          isMissing ? Code::MissingAttribute : Code::UnknownXml,
                          textOf(name, seen)});
        }
        if (others_ > 0) {
            findings.add({path, 0, Severity::Note, Code::UnknownXml,
                          "elements and attributes of more names are unknown or missing (" +
                              timesText(others_) + ')'});
        }
    }

private:
    enum class Oddity : std::uint8_t { UnknownElement, UnknownAttribute, MissingAttribute };

    /// What it is; the element that it stands in, or should; its own name, or the beginning of one
    /// that is too long to be shown.
    using Name = std::tuple<Oddity, std::string_view, std::string>;

    struct Seen {
        std::uint64_t line = 0; ///< The first one.
        std::uint64_t count = 0;
        std::string_view meant; ///< The name that its writer may have meant.
    };

    /// Null for one that is not kept.
    const Seen* count(Oddity oddity, const Element& element, std::string_view name,
                      std::uint64_t line) {
        Name key(oddity, element.name, name.substr(0, Diagnostic::longestText + 1));
        auto found = seen_.find(key);
        if (found == seen_.end()) {
            if (seen_.size() == mostXmlNames) {
                ++others_;
                return nullptr;
            }
            std::string_view meant;
            if (oddity == Oddity::UnknownElement) {
                meant = meantBy(name, element.kind.children);
            } else if (oddity == Oddity::UnknownAttribute) {
                meant = meantBy(name, element.kind.attributes);
            }
            found = seen_.emplace(std::move(key), Seen{line, 0, meant}).first;
        }
        ++found->second.count;
        return &found->second;
    }

    static Severity severityOf(const Name& oddity, std::string_view meant) {
        const auto& [kind, element, name] = oddity;
        bool isLoss = true;
        if (kind == Oddity::UnknownElement) {
            isLoss = isAmong(takenElements, meant) || isAmong(takenContents, name);
        } else if (kind == Oddity::UnknownAttribute) {
            isLoss = isTaken(element, meant);
        }
        return isLoss ? Severity::Warning : Severity::Note;
    }

    static std::string textOf(const Name& oddity, const Seen& seen) {
        const auto& [kind, element, name] = oddity;
        std::string text;
        switch (kind) {
        case Oddity::UnknownElement:
            text = "element " + quotedName(name) + " in " + quotedName(element) +
                   " is unknown and passed over with all that is in it";
            break;
        case Oddity::UnknownAttribute:
            text = "attribute " + quotedName(name) + " of element " + quotedName(element) +
                   " is unknown and passed over";
            break;
        case Oddity::MissingAttribute:
            text = "element " + quotedName(element) + " has no attribute " + quotedName(name) +
                   ": the argument's stays empty";
            break;
        }
        if (seen.count > 1) {
            text += " (" + timesText(seen.count) + ')';
        }
        if (!seen.meant.empty()) {
            text += "; did you mean " + quotedName(seen.meant) + '?';
        }
        return text;
    }

    std::map<Name, Seen> seen_;
    std::uint64_t others_ = 0; ///< How often there was one that is not kept.
};

} // namespace

void lookAtKernelXml(const std::string& path, Findings& findings) {
    std::ifstream file(path, std::ios::binary);
    Look look;
    try {
        lmx60::watchDocument(file, path, "project", Mekto::Project::kind(), look);
    } catch (const lmx60::c_lmx_exception&) {
        // It has been read before, and what is wrong with it was said; or it has changed meanwhile.
    }
    look.report(path, findings);
}

} // namespace consolidator::inspect
