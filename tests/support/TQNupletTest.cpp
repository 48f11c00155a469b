#include "support/TQNuplet.h"

#include "support/TQMessages.h"
#include "support/TQReadMemStream.h"
#include "support/TQWriteMemStream.h"

#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace {

/// A value of a derived class, as the parameters of projections are.
class Parameter : public TQData {
    TQ_IDENTITY(Parameter, TQData)

  public:
    using TQData::TQData;

    void archiveTo(TQWriteStream* stream) const override {
        stream->declareVersion("Parameter", 0);
        TQData::archiveTo(stream);
    }
};

TQNuplet choices() {
    TQNuplet nuplet;
    nuplet.add(std::make_unique<TQData>("north", 1));
    nuplet.add(std::make_unique<TQData>("south", "S"));
    nuplet.add(std::make_unique<TQData>("scale", 0.9996));
    return nuplet;
}

std::string archived(const TQNuplet& nuplet) {
    TQWriteMemStream stream;
    nuplet.archiveTo(&stream);
    return {stream.getMemory().begin(), stream.getMemory().end()};
}

} // namespace

TEST(TQNuplet, OwnsAListOfValues) {
    TQNuplet nuplet;
    EXPECT_EQ(nuplet.count(), 0);
    TQData* const value = nuplet.add(std::make_unique<TQData>("a", 1));
    EXPECT_EQ(nuplet.add(nullptr), nullptr);
    EXPECT_EQ(nuplet.count(), 1);
    EXPECT_EQ(nuplet.dataAt(0), value);
    EXPECT_EQ(nuplet.dataAt(1), nullptr);
    EXPECT_EQ(nuplet.dataAt(-1), nullptr);
}

TEST(TQNuplet, CopiesAreDeep) {
    const TQNuplet original = choices();
    TQNuplet copy = original;
    EXPECT_EQ(copy, original);
    EXPECT_NE(copy.dataAt(0), original.dataAt(0));
    copy.add(std::make_unique<TQData>("more", 1));
    EXPECT_EQ(original, choices());
    TQNuplet assigned;
    assigned.add(std::make_unique<TQData>("old", 0));
    assigned = original;
    EXPECT_EQ(assigned, original);
    assigned.dataAt(0)->setValueFrom(TQData("x", 99));
    EXPECT_FALSE(assigned == original);
    const TQNuplet& alias = assigned;
    assigned = alias;
    EXPECT_EQ(assigned.count(), 3);
    EXPECT_TRUE(original.isEqual(original.copy().get()));
}

TEST(TQNuplet, CopiesKeepTheClassesOfTheValues) {
    TQNuplet nuplet;
    nuplet.add(std::make_unique<Parameter>("p", 1));
    const TQNuplet copy = nuplet;
    EXPECT_STREQ(copy.dataAt(0)->className(), "Parameter");
}

TEST(TQNuplet, MovingTakesTheValuesOver) {
    TQNuplet original = choices();
    TQData* const first = original.dataAt(0);
    const TQNuplet moved = std::move(original);
    EXPECT_EQ(moved.dataAt(0), first);
    EXPECT_EQ(moved.count(), 3);
}

TEST(TQNuplet, EqualityCoversOrderAndCount) {
    TQNuplet longer = choices();
    longer.add(std::make_unique<TQData>("more", 1));
    EXPECT_EQ(choices(), choices());
    EXPECT_FALSE(choices() == longer);
    EXPECT_FALSE(choices().isEqual(nullptr));
    EXPECT_FALSE(choices() == TQData("north", 1));
}

TEST(TQNuplet, TellsItsClass) {
    const TQNuplet nuplet;
    EXPECT_STREQ(nuplet.className(), "TQNuplet");
    EXPECT_NE(nuplet.isKindOf("TQObject"), 0);
    EXPECT_EQ(nuplet.isKindOf("TQData"), 0);
}

TEST(TQNuplet, ComesBackFromAnArchive) {
    for (const TQNuplet& original : {TQNuplet(), choices()}) {
        const std::string bytes = archived(original);
        TQReadMemStream stream(bytes.data(), bytes.size());
        TQNuplet read;
        read.add(std::make_unique<TQData>("before", 1));
        read.unarchiveFrom(&stream);
        EXPECT_FALSE(stream.failed());
        EXPECT_EQ(stream.bytesLeft(), 0U);
        EXPECT_EQ(read, original);
    }
}

TEST(TQNuplet, ArchivesThePlainValueOfDerivedClasses) {
    TQNuplet nuplet;
    nuplet.add(std::make_unique<Parameter>("p", 1));
    const std::string bytes = archived(nuplet);
    TQReadMemStream stream(bytes.data(), bytes.size());
    TQNuplet read;
    read.unarchiveFrom(&stream);
    EXPECT_FALSE(stream.failed());
    ASSERT_EQ(read.count(), 1);
    EXPECT_EQ(*read.dataAt(0), TQData("p", 1));
}

TEST(TQNuplet, TheSmallestValueFitsTheBoundOnTheCount) {
    TQNuplet original;
    for (int i = 0; i < 100; ++i) {
        original.add(std::make_unique<TQData>("", false));
    }
    const std::string bytes = archived(original);
    TQReadMemStream stream(bytes.data(), bytes.size());
    TQNuplet read;
    read.unarchiveFrom(&stream);
    EXPECT_FALSE(stream.failed());
    EXPECT_EQ(read.count(), 100);
}

TEST(TQNuplet, ADamagedArchiveChangesNothing) {
    const TQErrorPrinter printer = tq_setErrorPrinter([](std::string_view) {});
    const std::string bytes = archived(choices());
    for (std::size_t length = 0; length < bytes.size(); ++length) {
        TQReadMemStream stream(bytes.data(), length);
        TQNuplet nuplet;
        nuplet.add(std::make_unique<TQData>("before", 1));
        nuplet.unarchiveFrom(&stream);
        EXPECT_TRUE(stream.failed());
        EXPECT_EQ(nuplet.count(), 1);
    }
    TQWriteMemStream out;
    out.declareVersion("TQNuplet", 0);
    out.write(std::uint32_t{0xFFFFFFFF});
    TQReadMemStream huge(out.getMemory().data(), out.getMemory().size());
    TQNuplet nuplet;
    nuplet.unarchiveFrom(&huge);
    EXPECT_TRUE(huge.failed());
    EXPECT_EQ(nuplet.count(), 0);
    tq_setErrorPrinter(printer);
}
