#include "support/TQData.h"

#include "support/TQMessages.h"
#include "support/TQReadMemStream.h"
#include "support/TQWriteMemStream.h"
#include "testing/CommaLocale.h"

#include <bit>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <memory>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

std::string typeOf(const TQData& data) { return data.newTypeRepresentation()->utf8(); }

std::string valueOf(const TQData& data) { return data.newValueRepresentation()->utf8(); }

TQData sharedData(const char* name, const char* text) {
    TQSharedString* const shared = TQSharedString::getUnique(text);
    TQData data(name, shared);
    shared->unuse();
    return data;
}

std::vector<TQData> oneOfEachKind() {
    return {TQData("logical", Logical(true)), TQData("int", -42), TQData("double", 0.1),
            TQData("string", TQString("degr\xDDs")), sharedData("shared", "degr\xC3\xA9s")};
}

std::string archived(const TQData& data) {
    TQWriteMemStream stream;
    data.archiveTo(&stream);
    return {stream.getMemory().begin(), stream.getMemory().end()};
}

/// How many uses a shared text has.
int usesOf(const char* text) {
    TQSharedString* const shared = TQSharedString::getUnique(text);
    const int uses = shared->uses() - 1;
    shared->unuse();
    return uses;
}

} // namespace

TEST(Logical, IsMadeOfBoolAlone) {
    EXPECT_FALSE(Logical());
    EXPECT_TRUE(Logical(true));
    static_assert(!std::is_constructible_v<Logical, int>);
    static_assert(!std::is_constructible_v<Logical, const char*>);
}

TEST(TQData, HoldsOneOfFiveKinds) {
    const std::vector<TQData> data = oneOfEachKind();
    EXPECT_EQ(data[0].type(), TQDataLogical);
    EXPECT_EQ(data[1].type(), TQDataInt);
    EXPECT_EQ(data[2].type(), TQDataDouble);
    EXPECT_EQ(data[3].type(), TQDataString);
    EXPECT_EQ(data[4].type(), TQDataSharedString);
    EXPECT_TRUE(data[0].logicalValue());
    EXPECT_EQ(data[1].intValue(), -42);
    EXPECT_EQ(data[2].doubleValue(), 0.1);
    EXPECT_EQ(*data[3].stringValue(), "degr\u00E9s");
    EXPECT_EQ(*data[4].stringValue(), "degr\u00E9s");
    EXPECT_NE(data[4].sharedStringValue(), nullptr);
    EXPECT_EQ(data[3].sharedStringValue(), nullptr);
    EXPECT_EQ(data[2].stringValue(), nullptr);
    EXPECT_EQ(*data[1].name(), "int");
}

TEST(TQData, ArgumentsChooseTheKindByTheirType) {
    EXPECT_EQ(TQData("n", true).type(), TQDataLogical);
    EXPECT_EQ(TQData("n", 1).type(), TQDataInt);
    EXPECT_EQ(TQData("n", 1.0).type(), TQDataDouble);
    EXPECT_EQ(TQData("n", "text").type(), TQDataString);
    EXPECT_EQ(TQData().type(), TQDataLogical);
}

TEST(TQData, NamesItsKinds) {
    const std::vector<TQData> data = oneOfEachKind();
    EXPECT_EQ(typeOf(data[0]), "Logical");
    EXPECT_EQ(typeOf(data[1]), "Int");
    EXPECT_EQ(typeOf(data[2]), "Double");
    EXPECT_EQ(typeOf(data[3]), "String");
    EXPECT_EQ(typeOf(data[4]), "SharedString");
    TQString text("type: ");
    data[1].appendTypeRepresentation(text);
    EXPECT_EQ(text, "type: Int");
}

TEST(TQData, WritesItsValueAsText) {
    const std::vector<TQData> data = oneOfEachKind();
    EXPECT_EQ(valueOf(data[0]), "true");
    EXPECT_EQ(valueOf(TQData("n", false)), "false");
    EXPECT_EQ(valueOf(data[1]), "-42");
    EXPECT_EQ(valueOf(data[2]), "0.1");
    EXPECT_EQ(valueOf(data[3]), "degr\u00E9s");
    EXPECT_EQ(valueOf(data[4]), "degr\u00E9s");
    EXPECT_EQ(valueOf(TQData("n", static_cast<TQSharedString*>(nullptr))), "");
    TQString text("value: ");
    data[1].appendValueRepresentation(text);
    EXPECT_EQ(text, "value: -42");
}

TEST(TQData, DoublesReadBackFromTheirRepresentationBitForBit) {
    std::mt19937_64 random(3);
    std::vector<double> values = {0.0,      -0.0,      1.0 / 3.0,
                                  infinity, -infinity, std::numeric_limits<double>::denorm_min()};
    for (int i = 0; i < 5000; ++i) {
        values.push_back(std::bit_cast<double>(random()));
    }
    for (const double value : values) {
        TQData read("n", 0.5);
        EXPECT_TRUE(read.takeValueFromRepresentation(*TQData("n", value).newValueRepresentation()));
        if (std::isnan(value)) {
            EXPECT_TRUE(std::isnan(read.doubleValue()));
        } else {
            EXPECT_EQ(std::bit_cast<std::uint64_t>(read.doubleValue()), std::bit_cast<std::uint64_t>(value));
        }
    }
}

TEST(TQData, RepresentationsIgnoreTheLocale) {
    const CommaLocale commaLocale;
    EXPECT_EQ(valueOf(TQData("n", 1234567.5)), "1234567.5");
    EXPECT_EQ(valueOf(TQData("n", 1234567)), "1234567");
    TQData data("n", 0.0);
    EXPECT_TRUE(data.takeValueFromRepresentation("1234.5"));
    EXPECT_EQ(data.doubleValue(), 1234.5);
}

TEST(TQData, TakesItsValueFromARepresentationOfItsKind) {
    for (const TQData& original : oneOfEachKind()) {
        TQData data = original;
        EXPECT_TRUE(data.takeValueFromRepresentation(*original.newValueRepresentation()));
        EXPECT_EQ(data, original);
    }
    TQData logical("n", false);
    for (const auto& [text, value] : {std::pair("true", true), std::pair("false", false),
                                      std::pair(" 1\r", true), std::pair("0", false)}) {
        EXPECT_TRUE(logical.takeValueFromRepresentation(text));
        EXPECT_EQ(static_cast<bool>(logical.logicalValue()), value) << text;
    }
    TQData number("n", 0);
    EXPECT_TRUE(number.takeValueFromRepresentation(" -17 "));
    EXPECT_EQ(number.intValue(), -17);
    EXPECT_TRUE(number.takeValueFromRepresentation("99999999999"));
    EXPECT_EQ(number.intValue(), 2147483647);
    TQData text("n", "old");
    EXPECT_TRUE(text.takeValueFromRepresentation(""));
    EXPECT_EQ(*text.stringValue(), "");
    TQData shared = sharedData("n", "old");
    EXPECT_TRUE(shared.takeValueFromRepresentation("new"));
    EXPECT_EQ(*shared.stringValue(), "new");
    EXPECT_EQ(shared.type(), TQDataSharedString);
    EXPECT_EQ(usesOf("old"), 0);
    EXPECT_TRUE(shared.takeValueFromRepresentation(*shared.stringValue()));
    EXPECT_EQ(*shared.stringValue(), "new");
}

TEST(TQData, RefusesTextsThatAreNoRepresentation) {
    TQData logical("n", true);
    for (const char* text : {"", "yes", "true false", "2", "TRUE"}) {
        EXPECT_FALSE(logical.takeValueFromRepresentation(text)) << text;
        EXPECT_TRUE(logical.logicalValue());
    }
    TQData integer("n", 5);
    for (const char* text : {"", "1.5", "1e3", "x", "1 2"}) {
        EXPECT_FALSE(integer.takeValueFromRepresentation(text)) << text;
        EXPECT_EQ(integer.intValue(), 5);
    }
    TQData number("n", 5.0);
    for (const char* text : {"", "1,5", "x", "1 2"}) {
        EXPECT_FALSE(number.takeValueFromRepresentation(text)) << text;
        EXPECT_EQ(number.doubleValue(), 5.0);
    }
}

TEST(TQData, ConvertsBetweenKindsOnDemand) {
    EXPECT_EQ(TQData("n", true).intValue(), 1);
    EXPECT_EQ(TQData("n", true).doubleValue(), 1.0);
    EXPECT_EQ(TQData("n", 7).doubleValue(), 7.0);
    EXPECT_EQ(TQData("n", -7.9).intValue(), -7);
    EXPECT_EQ(TQData("n", 1.0e300).intValue(), std::numeric_limits<int>::max());
    EXPECT_EQ(TQData("n", -infinity).intValue(), std::numeric_limits<int>::min());
    EXPECT_EQ(TQData("n", notANumber).intValue(), 0);
    EXPECT_EQ(TQData("n", "12.5 m").intValue(), 12);
    EXPECT_EQ(TQData("n", "12.5 m").doubleValue(), 12.5);
    EXPECT_TRUE(TQData("n", 0.5).logicalValue());
    EXPECT_FALSE(TQData("n", 0).logicalValue());
    EXPECT_TRUE(TQData("n", "true").logicalValue());
    EXPECT_FALSE(TQData("n", "false").logicalValue());
    EXPECT_TRUE(TQData("n", "1").logicalValue());
    const TQData none("n", static_cast<TQSharedString*>(nullptr));
    EXPECT_EQ(none.stringValue(), nullptr);
    EXPECT_EQ(none.intValue(), 0);
    EXPECT_FALSE(none.logicalValue());
}

TEST(TQData, CountsOneUseOfASharedTextForItselfAndEachCopy) {
    EXPECT_EQ(usesOf("uses"), 0);
    {
        TQSharedString* const shared = TQSharedString::getUnique("uses");
        const TQData data("n", shared);
        EXPECT_FALSE(shared->unuse());
        EXPECT_EQ(usesOf("uses"), 1);
        {
            const std::vector<TQData> copies = {data};
            const std::unique_ptr<TQObject> another = data.copy();
            EXPECT_EQ(copies[0].sharedStringValue(), shared);
            EXPECT_EQ(usesOf("uses"), 3);
        }
        EXPECT_EQ(usesOf("uses"), 1);
        TQData moved = sharedData("m", "uses");
        moved = TQData("m", 1);
        EXPECT_EQ(usesOf("uses"), 1);
    }
    EXPECT_EQ(usesOf("uses"), 0);
}

TEST(TQData, SetValueFromTakesKindAndValueButKeepsTheName) {
    for (const TQData& source : oneOfEachKind()) {
        TQData target("name", 3);
        target.setValueFrom(source);
        EXPECT_EQ(*target.name(), "name");
        EXPECT_EQ(target.type(), source.type());
        EXPECT_EQ(valueOf(target), valueOf(source));
    }
    EXPECT_EQ(usesOf("degr\xC3\xA9s"), 0);
}

TEST(TQData, SetValueFromItselfKeepsTheLastUseOfASharedText) {
    TQData data = sharedData("n", "own");
    data.setValueFrom(data);
    ASSERT_NE(data.stringValue(), nullptr);
    EXPECT_EQ(*data.stringValue(), "own");
    EXPECT_EQ(usesOf("own"), 1);
    TQData other = sharedData("n", "own");
    other.setValueFrom(data);
    EXPECT_EQ(usesOf("own"), 2);
    other.setValueFrom(TQData("n", 1));
    EXPECT_EQ(usesOf("own"), 1);
    const TQData& alias = data;
    data = alias;
    EXPECT_EQ(usesOf("own"), 1);
}

TEST(TQData, EqualityCoversNameKindAndValue) {
    EXPECT_EQ(TQData("n", 1), TQData("n", 1));
    EXPECT_FALSE(TQData("n", 1) == TQData("m", 1));
    EXPECT_FALSE(TQData("n", 1) == TQData("n", 2));
    EXPECT_FALSE(TQData("n", 1) == TQData("n", 1.0));
    EXPECT_FALSE(TQData("n", true) == TQData("n", 1));
    EXPECT_EQ(sharedData("n", "a"), sharedData("n", "a"));
    EXPECT_FALSE(TQData("n", 1).isEqual(nullptr));
    for (const TQData& data : oneOfEachKind()) {
        EXPECT_TRUE(data.isEqual(data.copy().get()));
    }
}

TEST(TQData, TellsItsClass) {
    const TQData data("n", 1);
    EXPECT_STREQ(data.className(), "TQData");
    EXPECT_NE(data.isKindOf("TQData"), 0);
    EXPECT_NE(data.isKindOf("TQObject"), 0);
    EXPECT_NE(data.isMemberOf("TQData"), 0);
    EXPECT_EQ(data.isMemberOf("TQObject"), 0);
}

TEST(TQData, ComesBackFromAnArchive) {
    std::vector<TQData> originals = oneOfEachKind();
    originals.emplace_back("none", static_cast<TQSharedString*>(nullptr));
    originals.emplace_back("-0", -0.0);
    originals.emplace_back("degr\xDDs", infinity);
    for (const TQData& original : originals) {
        const std::string bytes = archived(original);
        TQReadMemStream stream(bytes.data(), bytes.size());
        TQData read;
        read.unarchiveFrom(&stream);
        EXPECT_FALSE(stream.failed());
        EXPECT_EQ(stream.bytesLeft(), 0U);
        EXPECT_EQ(read, original);
    }
    EXPECT_EQ(usesOf("none"), 0);
}

TEST(TQData, ADamagedArchiveChangesNothing) {
    const TQErrorPrinter printer = tq_setErrorPrinter([](std::string_view) {});
    for (const TQData& original : oneOfEachKind()) {
        const std::string bytes = archived(original);
        for (std::size_t length = 0; length < bytes.size(); ++length) {
            TQReadMemStream stream(bytes.data(), length);
            TQData data("before", 77);
            data.unarchiveFrom(&stream);
            EXPECT_TRUE(stream.failed());
            EXPECT_EQ(data, TQData("before", 77));
        }
    }
    tq_setErrorPrinter(printer);

    TQWriteMemStream out;
    out.declareVersion("TQData", 0);
    TQString("name").archiveTo(&out);
    out.write(std::int32_t{5});
    out.write(std::int32_t{5});
    TQReadMemStream stream(out.getMemory().data(), out.getMemory().size());
    TQData data("before", 77);
    data.unarchiveFrom(&stream);
    EXPECT_TRUE(stream.failed());
    EXPECT_EQ(data, TQData("before", 77));
}

TEST(TQData, AnUnknownVersionIsReportedAndNothingMoreIsRead) {
    TQWriteMemStream out;
    out.declareVersion("TQData", 99);
    out.write(std::int32_t{5});
    TQReadMemStream stream(out.getMemory().data(), out.getMemory().size());
    std::string message;
    const TQErrorPrinter printer = tq_setErrorPrinter([&message](std::string_view text) { message += text; });
    TQData data("before", 77);
    data.unarchiveFrom(&stream);
    tq_setErrorPrinter(printer);
    EXPECT_EQ(message, "TQData::unarchiveFrom(TQReadStream *): version 99 is unknown.\n");
    EXPECT_EQ(stream.bytesLeft(), 4U);
    EXPECT_EQ(data, TQData("before", 77));
}
