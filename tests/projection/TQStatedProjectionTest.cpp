#include "projection/TQStatedProjection.h"

#include "testing/Identity.h"
#include "testing/ProjectionFiles.h"
#include "testing/ProjectionTables.h"
#include "testing/SampleProjection.h"
#include "testing/StreamBytes.h"
#include "testing/TextLines.h"

#include <gtest/gtest.h>

// What stating its parameters gives a class, on three classes made for it. What every class of the library
// shows as well stands in ProjectionClassTest.cpp.

namespace {

/// Every kind of parameter.
class Stating : public TQStatedProjection<Stating, TQProjection> {
    TQ_PROJECTION(Stating, TQProjection, 44, "Stating")

  public:
    Stating() = default;
    Stating(const Stating& other) : TQStatedProjection(other) { copyStated(other); }
    ~Stating() override = default;

    int initConstants() override {
        ++initialisations;
        factorAtInitialisation = factor;
        return 0;
    }

    bool isTurned = false;
    double turn = 1.0;   // when turned
    double height = 2.0; // unless turned
    double factor = 3.0; // since version 2
    bool isKept = false; // as an integer
    std::uint32_t options = 0;
    int initialisations = 0;
    double factorAtInitialisation = 0.0;
};

/// A class whose lines follow those of its parent.
class WithoutTextBlock : public TQStatedProjection<WithoutTextBlock, Stating> {
    TQ_PROJECTION(WithoutTextBlock, Stating, 45, "Without text block")

  public:
    WithoutTextBlock() = default;
    WithoutTextBlock(const WithoutTextBlock& other) : TQStatedProjection(other) { copyStated(other); }
    ~WithoutTextBlock() override = default;

    double more = 4.0;
};

/// A restricted form, which passes over the parameters of its parent.
class Restricted : public TQStatedProjection<Restricted, Stating, TQProjection> {
    TQ_PROJECTION(Restricted, Stating, 46, "Restricted")

  public:
    Restricted() = default;
    Restricted(const Restricted& other) : TQStatedProjection(other) { copyStated(other); }
    ~Restricted() override = default;

    double more = 4.0;
};

constexpr int kWriteFailed = 9005;

} // namespace

const TQProjectionStatement& Stating::statement() {
    using P = TQProjectionParameter;
    static constexpr P parameters[] = {
        P("isTurned", &Stating::isTurned, 9006),
        P("turn", P::degrees, &Stating::turn, 0.5, "%.3f", 9007).when(&Stating::isTurned),
        P("height", P::metres, &Stating::height, 0.25, P::sixDecimals, 9008).unless(&Stating::isTurned),
        P("factor", P::none, &Stating::factor, 1e-6, P::thirteenDigits, 9009).since(2),
        P("isKept", &Stating::isKept, 9010).keptAsInteger(),
        P(&Stating::options, 9011),
    };
    static constexpr TQProjectionStatement statement{
        .textBlock = {.className = ownName,
                      .oldestVersion = 1,
                      .newestVersion = 2,
                      .openFailed = 9002,
                      .headerUnreadable = 9003,
                      .versionUnknown = 9004,
                      .writeFailed = kWriteFailed},
        .archiveVersion = 2,
        .parameters = TQProjectionParameters(parameters),
    };
    return statement;
}

const TQProjectionStatement& WithoutTextBlock::statement() {
    using P = TQProjectionParameter;
    static constexpr P parameters[] = {
        {"more", P::none, &WithoutTextBlock::more, 0.5, P::tenDecimals, 9012},
    };
    static constexpr TQProjectionStatement statement{
        .textBlock = TQProjectionStatement::noTextBlock(kWriteFailed),
        .archiveVersion = 0,
        .parameters = TQProjectionParameters(parameters),
    };
    return statement;
}

const TQProjectionStatement& Restricted::statement() {
    using P = TQProjectionParameter;
    static constexpr P parameters[] = {
        {"more", P::none, &Restricted::more, 0.5, P::tenDecimals, 9012},
    };
    static constexpr TQProjectionStatement statement{
        .textBlock = TQProjectionStatement::commonTextBlock(ownName),
        .archiveVersion = 0,
        .parameters = TQProjectionParameters(parameters),
    };
    return statement;
}

namespace {

/// A projection of a class with values of its own in every parameter.
template <class Class>
Class filled(bool isTurned) {
    static TQEllipsoid ellipsoid = sampleEllipsoid();
    Class projection;
    projection.rename(TQString(kSampleName));
    projection.setEllipsoid(&ellipsoid);
    projection.isTurned = isTurned;
    projection.turn = 10.5;
    projection.height = 20.5;
    projection.factor = 30.5;
    projection.isKept = true;
    projection.options = 0xABCD0012;
    return projection;
}

/// The text that filled() writes.
TextLines linesOf(bool isTurned) {
    return TextLines{headerLine("Stating v2", 9003, kWriteFailed)} + sampleBaseLines() +
           TextLines{{isTurned ? "1" : "0", 9006, kWriteFailed},
                     isTurned ? TextLine{"10.500", 9007, kWriteFailed}
                              : TextLine{"20.500000", 9008, kWriteFailed},
                     {"30.5", 9009, kWriteFailed},
                     {"1", 9010, kWriteFailed},
                     {"18", 9011, kWriteFailed}};
}

/// The archive that filled() writes, in a version.
StreamBytes archiveOf(bool isTurned, int version) {
    StreamBytes bytes = StreamBytes().tag("Stating", version).append(sampleBaseArchive());
    bytes.byte(isTurned ? 1 : 0).number(isTurned ? 10.5 : 20.5);
    if (version == 2) {
        bytes.number(30.5);
    }
    return bytes.integer(1).integer(0x12);
}

std::vector<std::string> namesListedBy(const TQProjection& projection) {
    std::vector<std::string> names;
    for (const ListedParameter& parameter : listedParameters(projection)) {
        names.push_back(parameter.name);
    }
    return names;
}

} // namespace

// ---- conditional parameters ------------------------------------------------------------------------------

TEST(TQStatedProjection, ListsOnlyTheParametersThatHaveAMeaning) {
    EXPECT_EQ(
        namesListedBy(filled<Stating>(true)),
        (std::vector<std::string>{"Type", "Nom", "Ellipsoide", "isTurned", "turn", "factor", "isKept"}));
    EXPECT_EQ(
        namesListedBy(filled<Stating>(false)),
        (std::vector<std::string>{"Type", "Nom", "Ellipsoide", "isTurned", "height", "factor", "isKept"}));
}

TEST(TQStatedProjection, TakesOnlyTheParametersThatHaveAMeaningWithTheFlagJustTaken) {
    for (const bool isTurned : {true, false}) {
        Stating projection;
        ParameterTable parameters;
        parameters.with("turn", 7.0).with("height", 8.0).with("isTurned", Logical(isTurned));
        projection.setParams(parameters.table());
        EXPECT_EQ(projection.turn, isTurned ? 7.0 : 1.0);
        EXPECT_EQ(projection.height, isTurned ? 2.0 : 8.0);
        EXPECT_EQ(projection.initialisations, 1);
    }
}

TEST(TQStatedProjection, ComparesOnlyTheParametersThatHaveAMeaning) {
    for (const bool isTurned : {true, false}) {
        const Stating one = filled<Stating>(isTurned);
        Stating otherTurn(one);
        otherTurn.turn += 0.6;
        EXPECT_NE(one.hasSameDefinition(otherTurn), isTurned);
        Stating otherHeight(one);
        otherHeight.height += 0.3;
        EXPECT_EQ(one.hasSameDefinition(otherHeight), isTurned);
    }
    EXPECT_FALSE(filled<Stating>(true).hasSameDefinition(filled<Stating>(false)));
}

TEST(TQStatedProjection, CopiesOnlyTheParametersThatHaveAMeaning) {
    for (const bool isTurned : {true, false}) {
        const Stating original = filled<Stating>(isTurned);
        const Stating copy(original);
        EXPECT_EQ(copy.turn, isTurned ? 10.5 : 1.0);
        EXPECT_EQ(copy.height, isTurned ? 2.0 : 20.5);
        EXPECT_EQ(copy.options, 0xABCD0012);
        EXPECT_EQ(copy.factorAtInitialisation, 30.5);
    }
}

TEST(TQStatedProjection, TextAndArchiveHoldOnlyTheParametersThatHaveAMeaning) {
    for (const bool isTurned : {true, false}) {
        const Stating projection = filled<Stating>(isTurned);
        EXPECT_EQ(writtenProjectionText(projection), textOf(linesOf(isTurned)));
        EXPECT_EQ(archivedBytes(projection), archiveOf(isTurned, 2).bytes());
        expectCodesWhereverTheTextEnds(linesOf(isTurned),
                                       [](TQFile& file) { return Stating().loadFromFile(file, true); });
        Stating read;
        EXPECT_EQ(readProjectionText(read, textOf(linesOf(isTurned))), 0);
        EXPECT_EQ(archivedBytes(read), archiveOf(isTurned, 2).bytes());
        EXPECT_EQ(read.factorAtInitialisation, 30.5);
        ByteStream stream(archiveOf(isTurned, 2));
        Stating unarchived;
        unarchived.unarchiveFrom(stream.get());
        EXPECT_TRUE(stream.isReadExactly());
        EXPECT_EQ(writtenProjectionText(unarchived).substr(0, 10), "Stating v2");
        EXPECT_EQ(unarchived.turn, isTurned ? 10.5 : 1.0);
        EXPECT_EQ(unarchived.height, isTurned ? 2.0 : 20.5);
    }
}

// ---- versions --------------------------------------------------------------------------------------------

TEST(TQStatedProjection, ALaterParameterIsNotInAnOlderArchiveOrText) {
    for (const int version : {0, 1}) {
        ByteStream stream(archiveOf(true, version));
        Stating unarchived;
        unarchived.unarchiveFrom(stream.get());
        EXPECT_TRUE(stream.isReadExactly());
        EXPECT_EQ(unarchived.turn, 10.5);
        EXPECT_EQ(unarchived.factor, 3.0);
        EXPECT_TRUE(unarchived.isKept);
        EXPECT_EQ(unarchived.initialisations, 0);
    }
    TextLines lines = linesOf(true);
    lines.front().text = "Stating v1";
    lines.erase(lines.end() - 3);
    Stating read;
    EXPECT_EQ(readProjectionText(read, textOf(lines)), 0);
    EXPECT_EQ(read.turn, 10.5);
    EXPECT_EQ(read.factor, 3.0);
    EXPECT_EQ(read.options, 0x12U);
}

// ---- flags and options -----------------------------------------------------------------------------------

TEST(TQStatedProjection, AFlagKeptAsAnIntegerIsTrueForOneInTablesAndForAnythingButZeroElsewhere) {
    for (const int value : {0, 1, 2, -1}) {
        SCOPED_TRACE(value);
        Stating projection;
        ParameterTable parameters;
        parameters.with("isKept", value).with("isTurned", value);
        projection.setParams(parameters.table());
        EXPECT_EQ(projection.isKept, value == 1);
        EXPECT_EQ(projection.isTurned, value != 0);

        ByteStream stream(StreamBytes()
                              .tag("Stating", 1)
                              .append(sampleBaseArchive())
                              .byte(1)
                              .number(10.5)
                              .integer(value)
                              .integer(0));
        projection.unarchiveFrom(stream.get());
        EXPECT_EQ(projection.isKept, value != 0);

        TextLines lines = linesOf(true);
        lines[lines.size() - 2].text = std::to_string(value);
        EXPECT_EQ(readProjectionText(projection, textOf(lines)), 0);
        EXPECT_EQ(projection.isKept, value != 0);
    }
}

TEST(TQStatedProjection, OnlySixteenBitsOfOptionsAreParameters) {
    Stating one = filled<Stating>(true);
    Stating other(one);
    other.options = 0x00000012;
    EXPECT_TRUE(one.hasSameDefinition(other));
    other.options = 0xABCD0013;
    EXPECT_FALSE(one.hasSameDefinition(other));
    other.options = 0xABCD8012;
    EXPECT_FALSE(one.hasSameDefinition(other));

    ByteStream stream(StreamBytes()
                          .tag("Stating", 1)
                          .append(sampleBaseArchive())
                          .byte(1)
                          .number(10.5)
                          .integer(0)
                          .integer(0x7FFF8001));
    one.unarchiveFrom(stream.get());
    EXPECT_EQ(one.options, 0x8001U);
    TextLines lines = linesOf(true);
    lines.back().text = "65537";
    EXPECT_EQ(readProjectionText(one, textOf(lines)), 0);
    EXPECT_EQ(one.options, 1U);
}

// ---- a class without a text block ------------------------------------------------------------------------

TEST(TQStatedProjection, LinesOfAClassWithoutATextBlockFollowThoseOfItsParent) {
    WithoutTextBlock projection = filled<WithoutTextBlock>(true);
    projection.more = 40.5;
    const TextLines lines = linesOf(true) + TextLines{{"40.5000000000", 9012, kWriteFailed}};
    EXPECT_EQ(writtenProjectionText(projection), textOf(lines));
    EXPECT_EQ(writtenProjectionText(projection, false),
              textOf({lines.begin() + 1, lines.end()})); // the flag is handed on
    expectCodesWhereverTheTextEnds(lines,
                                   [](TQFile& file) { return WithoutTextBlock().loadFromFile(file, true); });
    WithoutTextBlock read;
    EXPECT_EQ(readProjectionText(read, textOf(lines)), 0);
    EXPECT_EQ(read.more, 40.5);
    EXPECT_EQ(read.initialisations, 1); // with the parent's
}

TEST(TQStatedProjection, AnArchiveBlockStandsAroundThatOfTheParent) {
    WithoutTextBlock projection = filled<WithoutTextBlock>(true);
    projection.more = 40.5;
    const StreamBytes archive =
        StreamBytes().tag("WithoutTextBlock", 0).append(archiveOf(true, 2)).number(40.5);
    EXPECT_EQ(archivedBytes(projection), archive.bytes());
    ByteStream stream(archive);
    WithoutTextBlock read;
    read.unarchiveFrom(stream.get());
    EXPECT_TRUE(stream.isReadExactly());
    EXPECT_EQ(read.more, 40.5);
    EXPECT_EQ(read.turn, 10.5);
}

TEST(TQStatedProjection, ConstantsOfAClassWithoutATextBlockAreComputedWithTheParents) {
    WithoutTextBlock projection;
    ParameterTable parameters;
    projection.setParams(parameters.with("more", 5.0).with("factor", 6.0).table());
    EXPECT_EQ(projection.more, 5.0);
    EXPECT_EQ(projection.initialisations, 1);
    EXPECT_EQ(projection.factorAtInitialisation, 6.0);
}

// ---- a restricted form -----------------------------------------------------------------------------------

TEST(TQStatedProjection, ARestrictedFormPassesOverTheParametersOfItsParentButComparesThem) {
    expectIdentity(Restricted(), {"Restricted", "Stating", "TQProjection"});
    Restricted projection = filled<Restricted>(true);
    projection.more = 40.5;
    EXPECT_EQ(namesListedBy(projection), (std::vector<std::string>{"Type", "Nom", "Ellipsoide", "more"}));
    EXPECT_EQ(archivedBytes(projection),
              StreamBytes().tag("Restricted", 0).append(sampleBaseArchive()).number(40.5).bytes());
    EXPECT_EQ(writtenProjectionText(projection),
              "Restricted v1\n" + textOf(sampleBaseLines()) + "40.5000000000\n");
    ParameterTable parameters;
    projection.setParams(parameters.with("more", 50.5).with("turn", 60.5).table());
    EXPECT_EQ(projection.more, 50.5);
    EXPECT_EQ(projection.turn, 10.5);

    Restricted other(projection);
    EXPECT_EQ(other.turn, 10.5);
    EXPECT_TRUE(projection.hasSameDefinition(other));
    other.turn = 60.5;
    EXPECT_FALSE(projection.hasSameDefinition(other));
}
