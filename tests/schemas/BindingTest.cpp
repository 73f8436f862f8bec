// The tables that bind element classes to XML, and the conversion of attribute values.

#include "shared/schemas/Binding.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace consolidator::test {

namespace {

using lmx60::AttributeRow;
using lmx60::ChildRow;
using lmx60::ElementKind;
using lmx60::unsignedNumber;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr std::uint64_t largest32 = std::numeric_limits<std::uint32_t>::max();
constexpr std::uint64_t largest64 = std::numeric_limits<std::uint64_t>::max();

// Numbers

/// The number that a text gives in 32 bits.
std::optional<std::uint64_t> number(std::string_view text) {
    return unsignedNumber(text, largest32);
}

TEST(UnsignedNumber, IsReadInDecimal) {
    EXPECT_EQ(number("0"), 0U);
    EXPECT_EQ(number("7"), 7U);
    EXPECT_EQ(number("1234567890"), 1234567890U);
}

TEST(UnsignedNumber, ReachesToTheLargestOf32Bits) {
    EXPECT_EQ(number("4294967295"), 4294967295U);
    EXPECT_EQ(number("4294967296"), std::nullopt);
    EXPECT_EQ(number("18446744073709551615"), std::nullopt);
    EXPECT_EQ(number("18446744073709551617"), std::nullopt); // 1 in 64 bits
}

TEST(UnsignedNumber, ReachesToTheLargestOf64Bits) {
    EXPECT_EQ(unsignedNumber("4294967296", largest64), 4294967296U);
    EXPECT_EQ(unsignedNumber("18446744073709551615", largest64), 18446744073709551615U);
    EXPECT_EQ(unsignedNumber("18446744073709551616", largest64), std::nullopt);
    EXPECT_EQ(unsignedNumber("99999999999999999999999", largest64), std::nullopt);
}

TEST(UnsignedNumber, ReachesToAnyGivenLimit) {
    EXPECT_EQ(unsignedNumber("0", 0), 0U);
    EXPECT_EQ(unsignedNumber("1", 0), std::nullopt);
}

TEST(UnsignedNumber, MayHaveZerosAndAPlusInFront) {
    EXPECT_EQ(number("007"), 7U);
    EXPECT_EQ(number("000000000000000000000000004294967295"), 4294967295U);
    EXPECT_EQ(number("+7"), 7U);
    EXPECT_EQ(number("+0"), 0U);
}

TEST(UnsignedNumber, MayHaveWhiteSpaceAround) {
    EXPECT_EQ(number(" 7 "), 7U);
    EXPECT_EQ(number("\t\n\r 7 \r\n\t"), 7U);
    EXPECT_EQ(number("  +7"), 7U);
}

TEST(UnsignedNumber, MustBeThere) {
    for (const char* const text : {"", " ", " \t\n\r", "+", " + "}) {
        EXPECT_EQ(number(text), std::nullopt) << testing::PrintToString(text);
    }
}

TEST(UnsignedNumber, HasNoOtherSign) {
    for (const char* const text : {"-1", "-0", "+-1", "++1", "-+1", "1-", "1+"}) {
        EXPECT_EQ(number(text), std::nullopt) << text;
    }
}

TEST(UnsignedNumber, FillsTheWholeText) {
    for (const char* const text :
         {"0x1", "1a", "a1", "1.0", "1e3", "1 2", "+ 1", "1,000", "true"}) {
        EXPECT_EQ(number(text), std::nullopt) << text;
    }
    EXPECT_EQ(number(std::string_view("1\0", 2)), std::nullopt);
}

TEST(UnsignedNumber, HasNoOtherWhiteSpaceAround) {
    EXPECT_EQ(number("\v7"), std::nullopt);
    EXPECT_EQ(number("7\f"), std::nullopt);
    EXPECT_EQ(number("\u00A07"), std::nullopt);
}

// Attributes

TEST(Attribute, IsAbsentAndEmptyAtFirst) {
    const lmx60::Attribute<std::string> text;
    EXPECT_FALSE(text.present);
    EXPECT_EQ(text.value, "");
    const lmx60::Attribute<std::uint32_t> count;
    EXPECT_FALSE(count.present);
    EXPECT_EQ(count.value, 0U);
}

TEST(Attribute, TakesAnyText) {
    lmx60::Attribute<std::string> attribute;
    EXPECT_TRUE(assign(attribute, " a\nb "));
    EXPECT_TRUE(attribute.present);
    EXPECT_EQ(attribute.value, " a\nb ");
    EXPECT_EQ(textOf(attribute), " a\nb ");
    EXPECT_TRUE(assign(attribute, ""));
    EXPECT_TRUE(attribute.present);
    EXPECT_EQ(attribute.value, "");
}

TEST(Attribute, TakesANumberAndGivesItPlain) {
    lmx60::Attribute<std::uint32_t> attribute;
    EXPECT_TRUE(assign(attribute, " +0042 "));
    EXPECT_TRUE(attribute.present);
    EXPECT_EQ(attribute.value, 42U);
    EXPECT_EQ(textOf(attribute), "42");
    EXPECT_TRUE(assign(attribute, "4294967295"));
    EXPECT_EQ(textOf(attribute), "4294967295");
}

TEST(Attribute, StaysAbsentWithoutANumber) {
    for (const char* const text : {"", "x", "-1", "4294967296"}) {
        lmx60::Attribute<std::uint32_t> attribute;
        EXPECT_FALSE(assign(attribute, text));
        EXPECT_EQ(attribute, lmx60::Attribute<std::uint32_t>());
    }
}

TEST(Attribute, DiffersByValueAndByPresence) {
    using Text = lmx60::Attribute<std::string>;
    EXPECT_EQ((Text{"a", true}), (Text{"a", true}));
    EXPECT_NE((Text{"a", true}), (Text{"b", true}));
    EXPECT_NE((Text{"", true}), (Text{"", false}));
}

// Tables

struct Book {
    lmx60::Attribute<std::string> title;

    static const ElementKind& kind();
};

struct Shelf {
    lmx60::Attribute<std::string> label;
    lmx60::Attribute<std::uint32_t> width;
    std::vector<std::string> note;
    std::vector<Book> book;

    static const ElementKind& kind();
};

const ElementKind& Book::kind() {
    static constexpr std::array attributes{lmx60::attribute<&Book::title>("title")};
    static constexpr ElementKind table{attributes, {}};
    return table;
}

const ElementKind& Shelf::kind() {
    static constexpr std::array attributes{lmx60::attribute<&Shelf::label>("label"),
                                           lmx60::attribute<&Shelf::width>("shelf_width")};
    static constexpr std::array children{lmx60::child<&Shelf::note>("note"),
                                         lmx60::child<&Shelf::book>("Book")};
    static constexpr ElementKind table{attributes, children};
    return table;
}

TEST(Table, NamesItsRowsInOrder) {
    EXPECT_THAT(Shelf::kind().attributes,
                ElementsAre(testing::Field(&AttributeRow::name, "label"),
                            testing::Field(&AttributeRow::name, "shelf_width")));
    EXPECT_THAT(Shelf::kind().children, ElementsAre(testing::Field(&ChildRow::name, "note"),
                                                    testing::Field(&ChildRow::name, "Book")));
    EXPECT_FALSE(Shelf::kind().isText);
}

TEST(AttributeRow, PutsATextIntoItsFieldOnly) {
    Shelf shelf;
    EXPECT_TRUE(Shelf::kind().attributes[0].assign(&shelf, "novels"));
    EXPECT_EQ(shelf.label, (lmx60::Attribute<std::string>{"novels", true}));
    EXPECT_FALSE(shelf.width.present);
}

TEST(AttributeRow, ConvertsToTheTypeOfItsField) {
    Shelf shelf;
    const AttributeRow& row = Shelf::kind().attributes[1];
    EXPECT_FALSE(row.assign(&shelf, "wide"));
    EXPECT_FALSE(shelf.width.present);
    EXPECT_TRUE(row.assign(&shelf, "80"));
    EXPECT_EQ(shelf.width, (lmx60::Attribute<std::uint32_t>{80, true}));
}

TEST(AttributeRow, GivesTheTextOfAPresentAttributeOnly) {
    Shelf shelf;
    EXPECT_EQ(Shelf::kind().attributes[0].text(&shelf), std::nullopt);
    EXPECT_EQ(Shelf::kind().attributes[1].text(&shelf), std::nullopt);
    shelf.label = {"", true};
    shelf.width = {80, true};
    EXPECT_EQ(Shelf::kind().attributes[0].text(&shelf), "");
    EXPECT_EQ(Shelf::kind().attributes[1].text(&shelf), "80");
}

TEST(ChildRow, AppendsEmptyChildrenAndFindsThem) {
    Shelf shelf;
    const ChildRow& row = Shelf::kind().children[1];
    EXPECT_EQ(row.count(&shelf), 0U);
    static_cast<Book*>(row.append(&shelf))->title = {"first", true};
    const void* const second = row.append(&shelf);
    EXPECT_EQ(second, &shelf.book.back());
    EXPECT_EQ(row.count(&shelf), 2U);
    ASSERT_THAT(shelf.book, SizeIs(2));
    EXPECT_EQ(shelf.book[0].title.value, "first");
    EXPECT_FALSE(shelf.book[1].title.present);
    EXPECT_EQ(row.at(&shelf, 0), &shelf.book[0]);
    EXPECT_EQ(row.at(&shelf, 1), &shelf.book[1]);
    EXPECT_THAT(shelf.note, IsEmpty());
}

TEST(ChildRow, AppendsTexts) {
    Shelf shelf;
    const ChildRow& row = Shelf::kind().children[0];
    *static_cast<std::string*>(row.append(&shelf)) = "dusty";
    row.append(&shelf);
    EXPECT_THAT(shelf.note, ElementsAre("dusty", ""));
    EXPECT_EQ(row.at(&shelf, 0), &shelf.note[0]);
}

TEST(ChildRow, KnowsTheKindOfItsChildren) {
    EXPECT_EQ(&Shelf::kind().children[0].kind(), &lmx60::textKind());
    EXPECT_EQ(&Shelf::kind().children[1].kind(), &Book::kind());
}

TEST(TextKind, HasNeitherAttributesNorChildren) {
    EXPECT_TRUE(lmx60::textKind().isText);
    EXPECT_THAT(lmx60::textKind().attributes, IsEmpty());
    EXPECT_THAT(lmx60::textKind().children, IsEmpty());
}

} // namespace

} // namespace consolidator::test
