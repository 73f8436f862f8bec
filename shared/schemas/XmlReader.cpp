#include "shared/schemas/XmlReader.h"

#include "shared/schemas/Exceptions.h"

// Expat declares the bounds for what entities may make of a document only for those who say that
// its library handles entities, which every build does that is no miniature.
#ifndef XML_DTD
#define XML_DTD
#endif
#ifndef XML_GE
#define XML_GE 1
#endif
#include <expat.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <memory>
#include <new>
#include <optional>
#include <type_traits>
#include <utility>
#include <vector>

namespace lmx60 {

namespace {

constexpr int firstBlock = 256 * 1024;
constexpr int largestBlock = 256 * 1024 * 1024;

/// With this much unused and the largest block behind it, the parser's buffer still is below 2 GiB.
constexpr std::int64_t largestPart = std::int64_t{512} * 1024 * 1024;

// Where the parser is. Expat 2.9 has functions of 64 bits for it and wants them to be used; before,
// a position has the width of a long, which is the same on the machines that this is built for.
#if XML_MAJOR_VERSION > 2 || (XML_MAJOR_VERSION == 2 && XML_MINOR_VERSION >= 9)
std::int64_t byteIndexOf(XML_Parser parser) {
    return XML_GetCurrentByteIndex64(parser);
}
std::uint64_t lineOf(XML_Parser parser) {
    return XML_GetCurrentLineNumber64(parser);
}
std::uint64_t columnOf(XML_Parser parser) {
    return XML_GetCurrentColumnNumber64(parser);
}
#else
std::int64_t byteIndexOf(XML_Parser parser) {
    return XML_GetCurrentByteIndex(parser);
}
std::uint64_t lineOf(XML_Parser parser) {
    return XML_GetCurrentLineNumber(parser);
}
std::uint64_t columnOf(XML_Parser parser) {
    return XML_GetCurrentColumnNumber(parser);
}
#endif

// What a document type may add to its document. `freeGrowth` is free, which small documents never
// reach; beyond it, what is added may be so many times the document. Expat's own bounds for
// entities (8 MiB, and 100 times) are those of a parser, which forgets what it has read. Here a
// record is made of each element, and takes some 80 bytes for each of its own; so entities get
// less. Default values make no elements: what is kept of them are their own bytes.
constexpr std::uint64_t freeGrowth = std::uint64_t{1} << 20U;
constexpr std::uint64_t mostByEntities = 4;
constexpr std::uint64_t mostByDefaults = 100;

/// Expat compares each attribute of an element that is declared with those before it.
constexpr std::size_t mostAttributeDeclarations = std::size_t{1} << 15U;

/// Expat expands an entity within another one on the call stack, before 2.7 without a bound. No
/// chain is longer than there are entities that refer to others.
constexpr std::size_t mostNestingEntities = 1000;

struct ParserFree {
    void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
};
using Parser = std::unique_ptr<std::remove_pointer_t<XML_Parser>, ParserFree>;

/// The row of this name; null if there is none. Tables are short, a search from the front is
/// fastest.
template <typename Row>
const Row* find(std::span<const Row> rows, std::string_view name) {
    const auto row = std::ranges::find(rows, name, &Row::name);
    return row == rows.end() ? nullptr : &*row;
}

/// Builds the tree from the parser's events; or, where there is a watcher, tells it of them.
class TreeBuilder {
public:
    TreeBuilder(std::string documentName, std::string_view rootName, const ElementKind& rootKind,
                void* root, DocumentWatcher* watcher)
        : documentName_(std::move(documentName)),
          rootName_(rootName),
          rootKind_(rootKind),
          root_(root),
          watcher_(watcher),
          parser_(XML_ParserCreate(nullptr)) {
        if (!parser_) {
            throw std::bad_alloc();
        }
        XML_SetUserData(parser_.get(), this);
        XML_SetElementHandler(parser_.get(), &TreeBuilder::onStart, &TreeBuilder::onEnd);
        watchDocumentType();
    }

    void read(std::istream& stream) {
        int blockSize = firstBlock;
        bool more = true;
        while (more) {
            // To be asked for first: a new buffer makes the parser forget it.
            const std::int64_t before = byteIndexOf(parser_.get());
            void* const block = XML_GetBuffer(parser_.get(), blockSize);
            if (block == nullptr) {
                if (fed_ - before > largestPart) {
                    throw fault(ErrorCode::CannotRead, "one of its parts is too large");
                }
                throw std::bad_alloc();
            }
            stream.read(static_cast<char*>(block), blockSize);
            fed_ += stream.gcount();
            more = stream.good();
            if (stream.bad()) {
                throw c_lmx_exception(ErrorCode::CannotRead, documentName_ + ": cannot be read");
            }
            parse(static_cast<int>(stream.gcount()), !more);
            // The parser looks at an unfinished part (a long comment, a long value) from its start
            // again whenever bytes come. They come in ever larger blocks until it gets on.
            const bool stands = byteIndexOf(parser_.get()) == before;
            blockSize = stands ? std::min(2 * blockSize, largestBlock) : firstBlock;
        }
    }

private:
    /// An element that has begun and not ended.
    struct Open {
        std::string_view name;
        const ElementKind* kind;
        void* element; ///< Null for a watcher.
    };

    /// Parameter entities are expanded as long as they stand in the document: what is outside is
    /// read by handlers, of which there are none.
    void watchDocumentType() {
        XML_Parser parser = parser_.get();
        XML_SetParamEntityParsing(parser, XML_PARAM_ENTITY_PARSING_ALWAYS);
        XML_SetBillionLaughsAttackProtectionActivationThreshold(parser, freeGrowth);
        // Expat counts the document itself, too.
        XML_SetBillionLaughsAttackProtectionMaximumAmplification(
            parser, static_cast<float>(1 + mostByEntities));
        XML_SetAttlistDeclHandler(parser, &TreeBuilder::onAttributeDeclaration);
        XML_SetEntityDeclHandler(parser, &TreeBuilder::onEntityDeclaration);
    }

    void parse(int length, bool isLast) {
        if (XML_ParseBuffer(parser_.get(), length, isLast ? 1 : 0) == XML_STATUS_OK) {
            return;
        }
        if (failure_) {
            std::rethrow_exception(failure_);
        }
        if (XML_GetErrorCode(parser_.get()) == XML_ERROR_NO_MEMORY) {
            throw std::bad_alloc(); // no fault of the document
        }
        const XML_Error error = XML_GetErrorCode(parser_.get());
        throw fault(error == XML_ERROR_AMPLIFICATION_LIMIT_BREACH ? ErrorCode::UnsafeDocument
                                                                  : ErrorCode::NotWellFormed,
                    XML_ErrorString(error));
    }

    c_lmx_reader_exception fault(ErrorCode code, const std::string& reason) const {
        return {code, documentName_, lineOf(parser_.get()), columnOf(parser_.get()) + 1, reason};
    }

    /// Runs an event's work. The parser is C code that no exception may pass: one is kept, and the
    /// parser is stopped.
    template <typename Work>
    static void guarded(void* self, Work work) {
        auto& builder = *static_cast<TreeBuilder*>(self);
        // The parser may have an event left that it tells of although it was stopped.
        if (builder.failure_) {
            return;
        }
        try {
            work(builder);
        } catch (...) {
            builder.failure_ = std::current_exception();
            XML_StopParser(builder.parser_.get(), XML_FALSE);
        }
    }

    static void onStart(void* self, const char* name, const char** attributes) {
        guarded(self, [=](TreeBuilder& builder) { builder.start(name, attributes); });
    }

    static void onEnd(void* self, const char* /*name*/) {
        guarded(self, [](TreeBuilder& builder) { builder.end(); });
    }

    static void onText(void* self, const char* text, int length) {
        guarded(self, [=](TreeBuilder& builder) {
            builder.addText(std::string_view(text, static_cast<std::size_t>(length)));
        });
    }

    static void onAttributeDeclaration(void* self, const char* /*element*/,
                                       const char* /*attribute*/, const char* /*type*/,
                                       const char* /*value*/, int /*isRequired*/) {
        guarded(self, [](TreeBuilder& builder) {
            if (++builder.attributeDeclarations_ > mostAttributeDeclarations) {
                throw builder.fault(ErrorCode::UnsafeDocument,
                                    "the document type declares too many attributes");
            }
        });
    }

    static void onEntityDeclaration(void* self, const char* /*name*/, int /*isParameter*/,
                                    const char* value, int length, const char* /*base*/,
                                    const char* /*systemId*/, const char* /*publicId*/,
                                    const char* /*notation*/) {
        guarded(self, [=](TreeBuilder& builder) {
            const std::string_view text(value == nullptr ? "" : value,
                                        static_cast<std::size_t>(length));
            if (text.find_first_of("&%") != std::string_view::npos &&
                ++builder.nestingEntities_ > mostNestingEntities) {
                throw builder.fault(ErrorCode::UnsafeDocument,
                                    "the document type has too many entities that refer to others");
            }
        });
    }

    /// Default values stand behind those of the tag. Expat takes no account of them.
    void countDefaults(const char** attributes) {
        attributes += XML_GetSpecifiedAttributeCount(parser_.get());
        if (*attributes == nullptr) {
            return;
        }
        for (; *attributes != nullptr; ++attributes) {
            defaultBytes_ += std::strlen(*attributes) + 1;
        }
        if (defaultBytes_ > freeGrowth + mostByDefaults * static_cast<std::uint64_t>(fed_)) {
            throw fault(ErrorCode::UnsafeDocument,
                        "the document type adds too much in default values");
        }
    }

    void start(const char* name, const char** attributes) {
        countDefaults(attributes);
        if (skipped_ > 0) {
            ++skipped_;
            return;
        }
        std::optional<Open> element;
        if (!open_.empty()) {
            element = startChild(name);
        } else if (name == rootName_) {
            element = Open{rootName_, &rootKind_, root_};
        } else {
            throw fault(ErrorCode::UnexpectedRoot,
                        "\"" + std::string(name) + "\", not \"" + std::string(rootName_) + "\"");
        }
        if (!element) {
            skipped_ = 1;
            return;
        }
        open_.push_back(*element);
        if (watcher_ != nullptr) {
            tellOfElement(attributes);
            return;
        }
        assignAttributes(attributes);
        if (element->kind->isText) {
            listenToText(true);
        }
    }

    /// Adds a child to the innermost open element. An open element never moves: it is the last one
    /// of its list, to which nothing is added before it has ended.
    std::optional<Open> startChild(std::string_view name) const {
        const Open& parent = open_.back();
        const ChildRow* const row = find(parent.kind->children, name);
        if (row == nullptr) {
            if (watcher_ != nullptr) {
                watcher_->onUnknownElement({parent.name, *parent.kind}, lineOf(parser_.get()),
                                           name);
            }
            return std::nullopt;
        }
        return Open{row->name, &row->kind(),
                    watcher_ == nullptr ? row->append(parent.element) : nullptr};
    }

    void tellOfElement(const char** attributes) {
        attributeNames_.clear();
        for (; *attributes != nullptr; attributes += 2) {
            attributeNames_.emplace_back(*attributes);
        }
        const Open& element = open_.back();
        watcher_->onElement({element.name, *element.kind}, lineOf(parser_.get()), attributeNames_);
    }

    void assignAttributes(const char** attributes) {
        const Open& element = open_.back();
        for (; *attributes != nullptr; attributes += 2) {
            const AttributeRow* const row = find(element.kind->attributes, attributes[0]);
            if (row != nullptr && !row->assign(element.element, attributes[1])) {
                throw fault(ErrorCode::InvalidValue, std::string(attributes[0]) + "=\"" +
                                                         attributes[1] +
                                                         "\" is no unsigned 32-bit number");
            }
        }
    }

    void end() {
        if (skipped_ > 0) {
            --skipped_;
            return;
        }
        const Open ended = open_.back();
        open_.pop_back();
        if (watcher_ != nullptr) {
            return;
        }
        if (ended.kind->isText) {
            listenToText(false);
        }
        if (ended.kind->end != nullptr) {
            finish(ended);
        }
    }

    void finish(const Open& ended) const {
        try {
            ended.kind->end(ended.element);
        } catch (const Refusal& refusal) {
            // Who refuses does not know where in the document that is.
            throw fault(ErrorCode::TooLarge, refusal.what());
        }
    }

    /// Most text stands between elements and is of no use. Without a handler the parser passes over
    /// it at its own speed.
    void listenToText(bool wanted) {
        XML_SetCharacterDataHandler(parser_.get(), wanted ? &TreeBuilder::onText : nullptr);
    }

    void addText(std::string_view text) {
        // An unknown element inside has text of its own, which is passed over.
        if (skipped_ == 0) {
            *static_cast<std::string*>(open_.back().element) += text;
        }
    }

    std::string documentName_;
    std::string_view rootName_;
    const ElementKind& rootKind_;
    void* root_;
    DocumentWatcher* watcher_;
    std::vector<std::string_view> attributeNames_; ///< Room for those of one element.
    Parser parser_;
    std::vector<Open> open_;
    std::size_t skipped_ = 0; ///< Open elements from the outermost unknown one on.
    std::int64_t fed_ = 0;    ///< Bytes of the document that the parser has.
    std::size_t attributeDeclarations_ = 0;
    std::size_t nestingEntities_ = 0; ///< Declared ones that may refer to others.
    std::uint64_t defaultBytes_ = 0;  ///< Of attributes that elements got by declarations.
    std::exception_ptr failure_;
};

} // namespace

void readDocument(std::istream& stream, const std::string& documentName, std::string_view rootName,
                  const ElementKind& kind, void* root) {
    TreeBuilder(documentName, rootName, kind, root, nullptr).read(stream);
}

void watchDocument(std::istream& stream, const std::string& documentName, std::string_view rootName,
                   const ElementKind& kind, DocumentWatcher& watcher) {
    TreeBuilder(documentName, rootName, kind, nullptr, &watcher).read(stream);
}

} // namespace lmx60
