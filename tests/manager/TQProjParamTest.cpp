#include "manager/TQProjParam.h"

#include "support/HashTbl.h"
#include "testing/Identity.h"
#include "testing/StreamBytes.h"

#include <gtest/gtest.h>

#include <memory>
#include <utility>

namespace {

const TQString kName("k0");
const TQString kNoLabel;

/// A list with the given numbers.
std::unique_ptr<TQNuplet> listOf(std::initializer_list<double> numbers) {
    auto list = std::make_unique<TQNuplet>();
    for (const double number : numbers) {
        list->add(std::make_unique<TQData>(TQString("choice"), number));
    }
    return list;
}

} // namespace

TEST(TQProjParam, AnswersToItsClassAndItsAncestors) {
    expectIdentity(TQProjParam(kName, 1.0, kNoLabel), {"TQProjParam", "TQData"});
}

TEST(TQProjParam, HoldsALogical) {
    const TQProjParam parameter(kName, Logical(true), kNoLabel);
    EXPECT_EQ(parameter.type(), TQDataLogical);
    EXPECT_TRUE(parameter.logicalValue());
    EXPECT_EQ(parameter.intValue(), 1);
    EXPECT_EQ(*parameter.name(), kName);
}

TEST(TQProjParam, HoldsAnInteger) {
    const TQProjParam parameter(kName, -7, kNoLabel);
    EXPECT_EQ(parameter.type(), TQDataInt);
    EXPECT_EQ(parameter.intValue(), -7);
}

TEST(TQProjParam, HoldsANumber) {
    const TQProjParam parameter(kName, 0.9996, kNoLabel);
    EXPECT_EQ(parameter.type(), TQDataDouble);
    EXPECT_EQ(parameter.doubleValue(), 0.9996);
}

TEST(TQProjParam, HoldsACopyOfAText) {
    TQString text("before");
    const TQProjParam parameter(kName, text, kNoLabel);
    text.set("after");
    EXPECT_EQ(parameter.type(), TQDataString);
    ASSERT_NE(parameter.stringValue(), nullptr);
    EXPECT_EQ(*parameter.stringValue(), "before");
}

TEST(TQProjParam, HoldsAUseOfASharedText) {
    TQSharedString* const shared = TQSharedString::getUnique(TQString("shared by a parameter"));
    {
        const TQProjParam parameter(kName, shared, kNoLabel);
        EXPECT_EQ(parameter.type(), TQDataSharedString);
        EXPECT_EQ(parameter.sharedStringValue(), shared);
        const auto copy = tq_copyOf(parameter);
        EXPECT_EQ(copy->sharedStringValue(), shared);
        EXPECT_FALSE(shared->unuse()); // the parameter and its copy use it
    }
    TQSharedString* const again = TQSharedString::getUnique(TQString("shared by a parameter"));
    EXPECT_TRUE(again->unuse()); // nobody else does any more
}

TEST(TQProjParam, HasItsUnitLabelByteForByte) {
    const TQProjParam parameter(kName, 1.0, TQString("degr\xDDs"));
    ASSERT_NE(parameter.unitLabel(), nullptr);
    EXPECT_STREQ(parameter.unitLabel()->charBuffer(), "degr\xDDs");
    EXPECT_EQ(parameter.unitLabel()->length(), 6);
}

TEST(TQProjParam, HasNoLabelForAnEmptyOne) {
    EXPECT_EQ(TQProjParam(kName, Logical(true), kNoLabel).unitLabel(), nullptr);
    EXPECT_EQ(TQProjParam(kName, 1, kNoLabel).unitLabel(), nullptr);
    EXPECT_EQ(TQProjParam(kName, 1.0, kNoLabel).unitLabel(), nullptr);
    EXPECT_EQ(TQProjParam(kName, TQString("text"), kNoLabel).unitLabel(), nullptr);
    EXPECT_EQ(TQProjParam(kName, static_cast<TQSharedString*>(nullptr), kNoLabel).unitLabel(), nullptr);
}

TEST(TQProjParam, TakesAListOfChoicesOver) {
    auto list = listOf({1.0, 2.0});
    const TQNuplet* const address = list.get();
    const TQProjParam parameter(kName, 1.0, kNoLabel, std::move(list));
    EXPECT_EQ(parameter.choices(), address);
    EXPECT_EQ(TQProjParam(kName, 1.0, kNoLabel).choices(), nullptr);
}

TEST(TQProjParam, CopyHasALabelAndAListOfItsOwn) {
    auto original = std::make_unique<TQProjParam>(kName, 0.9996, TQString("m"), listOf({1.0, 2.0}));
    const auto copy = tq_copyOf(*original);
    ASSERT_NE(copy->unitLabel(), nullptr);
    ASSERT_NE(copy->choices(), nullptr);
    EXPECT_NE(copy->unitLabel(), original->unitLabel());
    EXPECT_NE(copy->choices(), original->choices());
    EXPECT_NE(copy->choices()->dataAt(0), original->choices()->dataAt(0));
    EXPECT_TRUE(copy->isEqual(original.get()));
    original.reset();
    EXPECT_EQ(*copy->name(), kName);
    EXPECT_EQ(copy->doubleValue(), 0.9996);
    EXPECT_EQ(*copy->unitLabel(), "m");
    ASSERT_EQ(copy->choices()->count(), 2);
    EXPECT_EQ(copy->choices()->dataAt(0)->doubleValue(), 1.0);
    EXPECT_EQ(copy->choices()->dataAt(1)->doubleValue(), 2.0);
}

TEST(TQProjParam, CopyWithoutLabelAndListHasNone) {
    const auto copy = tq_copyOf(TQProjParam(kName, 1.0, kNoLabel));
    EXPECT_EQ(copy->unitLabel(), nullptr);
    EXPECT_EQ(copy->choices(), nullptr);
}

TEST(TQProjParam, ItsArchiveIsThatOfTheNamedValue) {
    EXPECT_EQ(archivedBytes(TQProjParam(kName, 0.9996, TQString("m"), listOf({1.0}))),
              archivedBytes(TQData(kName, 0.9996)));
}

TEST(TQProjParam, IsFoundInATableUnderItsName) {
    HashTbl<TQProjParam> table;
    table.add(std::make_unique<TQProjParam>(kName, 0.9996, kNoLabel), kName);
    ASSERT_NE(table.lookup("k0"), nullptr);
    EXPECT_EQ(table.lookup("k0")->doubleValue(), 0.9996);
    EXPECT_EQ(table.lookup("K0"), nullptr);
}
