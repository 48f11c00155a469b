#include "manager/TQProjMgr.h"
#include "manager/TQProjectionFactory.h"
#include "support/TQWriteMemStream.h"
#include "testing/StreamBytes.h"
#include "tests/manager/ManagerCase.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <vector>

using testing::Contains;
using testing::ContainsRegex;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::UnorderedElementsAreArray;

// ---- Memory

#ifdef __SANITIZE_ADDRESS__
/// The sanitizer's own, from a header that not every compiler brings along.
extern "C" int __sanitizer_install_malloc_and_free_hooks(void (*onMalloc)(const volatile void*, std::size_t),
                                                         void (*onFree)(const volatile void*));
#endif

namespace {

/// The memory that the whole program takes while it runs under the address sanitizer, which tells of every
/// block; elsewhere all is 0.
struct Memory {
    static inline std::atomic<std::size_t> taken;     ///< bytes, all together
    static inline std::atomic<std::size_t> largest;   ///< bytes of the largest block
    static inline std::atomic<std::ptrdiff_t> blocks; ///< blocks in use
};

#ifdef __SANITIZE_ADDRESS__
void noteTaken(const volatile void* /*block*/, std::size_t size) {
    Memory::taken += size;
    Memory::largest = std::max(Memory::largest.load(), size);
    ++Memory::blocks;
}

void noteGiven(const volatile void* block) { Memory::blocks -= block != nullptr ? 1 : 0; }

void countMemory() {
    static const int hooks = __sanitizer_install_malloc_and_free_hooks(noteTaken, noteGiven);
    EXPECT_NE(hooks, 0);
}
#else
void countMemory() {}
#endif

} // namespace

// ---- The archive

namespace {

constexpr int kAllTypeCodes[] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 15, 127};
constexpr double kEccentricitySquared = 0.0067;
constexpr std::size_t kTagVersionLength = 2;

std::unique_ptr<TQEllipsoid> ellipsoid(const char* name, double a, std::uint32_t shiftKind) {
    auto made = std::make_unique<TQEllipsoid>(TQString(name), a, kEccentricitySquared);
    made->setDatumShift(static_cast<TQEllipsoid::DatumShiftKind>(shiftKind), 6378137.0, 1.0 / 298.25,
                        {100.0, -200.0, 300.0, 1e-5, 2e-5, -3e-5, 4.5});
    return made;
}

template <class Value>
void addParameter(HashTbl<TQProjParam>& params, const char* name, const Value& value) {
    params.add(std::make_unique<TQProjParam>(TQString(name), value, TQString()), TQString(name));
}

/// The bit of a reference that says that its number is new.
constexpr std::uint32_t kNewObject = 0x80000000U;

/// Four bytes as they are written: a reference, a count or a length.
std::string field(std::uint32_t value) {
    return StreamBytes().integer(static_cast<std::int32_t>(value)).bytes();
}

/// Where something with a name ends in an archive.
struct Piece {
    std::string name;
    std::size_t end;
};

/// Where a class's version tag stands in an archive.
struct Tag {
    std::string className;
    std::size_t begin;

    std::size_t versionOffset() const { return begin + 1 + className.size(); }
    std::size_t end() const { return versionOffset() + kTagVersionLength; }
};

/// A document's archive with a projection of every type on ellipsoids of every kind, and on none; written
/// piece by piece, so that it is known where everything stands.
struct SoundArchive {
    TQProjMgr source{false};
    std::string bytes;
    std::vector<Piece> ellipsoids;
    std::vector<Piece> projections;
    std::vector<std::size_t> references; ///< of the projections
    std::vector<std::size_t> lengths;    ///< the offsets of counts and lengths, 4 bytes each
    std::vector<Tag> tags;

    SoundArchive() {
        fillSource();
        writeEllipsoids();
        writeProjections();
        findLengths();
        findTags();
    }

    const TQProjection& projection(const std::string& name) {
        return *source.projWithName(TQString(name.c_str()), false);
    }

    /// The archive with 4 other bytes at an offset.
    std::string with(std::size_t offset, std::uint32_t value) const {
        return bytes.substr(0, offset) + field(value) + bytes.substr(offset + sizeof(value));
    }

    /// The archive with the opposite of one bit, counted from the first one.
    std::string withBitFlipped(std::size_t bit) const {
        std::string flipped = bytes;
        flipped[bit / 8] =
            static_cast<char>(static_cast<unsigned char>(flipped[bit / 8]) ^ (1U << (bit % 8)));
        return flipped;
    }

    /// The offset of the type code of a projection.
    std::size_t typeOffset(std::size_t index) const { return references[index] + sizeof(std::uint32_t); }

  private:
    void fillSource() {
        constexpr const char* names[] = {"Unmoved 1900", "Moved 1901", "Turned 1902"};
        for (std::uint32_t kind = 0; kind < 3; ++kind) {
            source.ellipsoidManager().addEllipsoid(ellipsoid(names[kind], 6370000.0 + 1000.0 * kind, kind));
        }
        source.ellipsoidManager().addEllipsoid(ellipsoid("Moved Too 1903", 6378388.0, 1));
        for (std::size_t i = 0; i < std::size(kAllTypeCodes); ++i) {
            const int code = kAllTypeCodes[i];
            HashTbl<TQProjParam> params(1);
            addParameter(params, "Type", code);
            addParameter(params, "Nom", tq_newProjectionOfType(code)->typeName());
            addParameter(params, "lambda0", 9.5);
            addParameter(params, "definition", TQString("EPSG:2154"));
            if (i % 4 != 3) {
                addParameter(params, "Ellipsoide", TQString(names[i % 4]));
            }
            source.createProjFromParams(&params);
        }
    }

    void writeCount(const char* className, std::int32_t count) {
        bytes += StreamBytes().tag(className, 0).bytes();
        lengths.push_back(bytes.size());
        bytes += StreamBytes().integer(count).bytes();
    }

    void writeEllipsoids() {
        const auto& table = source.ellipsoidManager().ellipsoids();
        writeCount("TQEllMgr", table.count());
        HashState<TQEllipsoid> state;
        while (const TQEllipsoid* each = table.next(state)) {
            bytes += archivedBytes(*each);
            ellipsoids.push_back({each->name()->utf8(), bytes.size()});
        }
    }

    void writeProjections() {
        writeCount("TQProjMgr", static_cast<std::int32_t>(std::size(kAllTypeCodes)));
        HashState<TQProjection> state;
        while (const TQProjection* each = source.traverseUserProjs(&state)) {
            references.push_back(bytes.size());
            bytes += field(kNewObject + static_cast<std::uint32_t>(references.size()));
            bytes += static_cast<char>(each->projectionType());
            bytes += archivedBytes(*each);
            projections.push_back({each->name()->utf8(), bytes.size()});
        }
    }

    void findLengths() {
        std::set<std::string> texts{"", "EPSG:2154"};
        for (const auto* pieces : {&ellipsoids, &projections}) {
            for (const Piece& piece : *pieces) {
                texts.insert(piece.name);
            }
        }
        for (const std::string& text : texts) {
            const std::string counted = StreamBytes().text(text).bytes();
            for (std::size_t at = bytes.find(counted); at != std::string::npos;
                 at = bytes.find(counted, at + 1)) {
                lengths.push_back(at + 1);
            }
        }
    }

    // No other text of the archive begins as the names of classes do.
    void findTags() {
        for (std::size_t at = bytes.find("TQ"); at != std::string::npos; at = bytes.find("TQ", at + 1)) {
            const auto length = static_cast<unsigned char>(bytes[at - 1]);
            tags.push_back({bytes.substr(at, length), at - 1});
        }
    }
};

SoundArchive& sound() {
    static SoundArchive archive;
    return archive;
}

// ---- Reading

/// A manager that reads an archive.
struct Reading {
    CapturedMessages messages;
    TQProjMgr manager{false};

    explicit Reading(const std::string& bytes) { read(bytes, TQProjMgr::FromDocument); }

    void read(const std::string& bytes, std::uint32_t flags) {
        ByteStream stream(bytes);
        stream.get()->setFlags(flags);
        manager.unarchiveFrom(stream.get());
    }

    /// Does with what was read what an application does. What PROJ would have to be asked for is left out: it
    /// takes longer than all the rest.
    void use() const {
        const CapturedMessages unread;
        HashState<TQProjection> state;
        while (const TQProjection* projection = manager.traverseUserProjs(&state)) {
            if (projection->projectionType() != 127) {
                TQPoint point;
                projection->convertGeoPt(TQPoint{0.15, 0.7}, point);
                projection->convertGlobalPt(TQPoint{5e5, 4e6}, point);
                projection->wktDefinition(false);
            }
        }
        TQWriteMemStream stream;
        manager.archiveTo(&stream);
    }

    /// What stands in front of an offset of the sound archive must be there as the sound one has it.
    void expectWhatStandsBefore(std::size_t offset) {
        for (const Piece& piece : sound().ellipsoids) {
            if (piece.end <= offset) {
                const TQString name(piece.name.c_str());
                const TQEllipsoid* const found = manager.ellipsoidManager().ellipsoidWithName(name);
                ASSERT_NE(found, nullptr) << piece.name;
                EXPECT_TRUE(found->isEqual(sound().source.ellipsoidManager().ellipsoidWithName(name)))
                    << piece.name;
            }
        }
        for (const Piece& piece : sound().projections) {
            if (piece.end <= offset) {
                const TQProjection* const found = manager.projWithName(TQString(piece.name.c_str()), false);
                ASSERT_NE(found, nullptr) << piece.name;
                EXPECT_TRUE(found->isEqual(&sound().projection(piece.name))) << piece.name;
            }
        }
    }

    /// The projections in front of an offset of the sound archive must be there, and no others.
    void expectExactlyWhatStandsBefore(std::size_t offset) {
        expectWhatStandsBefore(offset);
        EXPECT_EQ(namesIn(manager), namesBefore(offset));
    }

    static std::vector<std::string> namesBefore(std::size_t offset) {
        std::vector<std::string> names;
        for (const Piece& piece : sound().projections) {
            if (piece.end <= offset) {
                names.push_back(piece.name);
            }
        }
        std::ranges::sort(names);
        return names;
    }
};

/// The memory that reading may take without an archive, and for each byte of one, copies of it included.
constexpr std::size_t kBytesAtRest = 4096;
constexpr std::size_t kBytesPerByte = 24;

/// Reads an archive that somebody has tampered with: it must take little memory and leave nothing.
/// @param check takes the Reading
template <class Check>
void expectHarmless(const std::string& bytes, const Check& check) {
    const std::ptrdiff_t blocksBefore = Memory::blocks;
    const std::size_t takenBefore = Memory::taken;
    Memory::largest = 0;
    {
        Reading reading(bytes);
        EXPECT_LE(Memory::taken - takenBefore, kBytesAtRest + kBytesPerByte * bytes.size());
        EXPECT_LE(Memory::largest, kBytesAtRest + bytes.size());
        reading.use();
        check(reading);
    }
    EXPECT_EQ(Memory::blocks, blocksBefore) << "blocks are left over";
}

class HostileArchive : public testing::Test {
  protected:
    static void SetUpTestSuite() {
        Reading(sound().bytes).use(); // what lives for the whole process is made
        countMemory();
    }
};

} // namespace

TEST_F(HostileArchive, TheSoundOneIsWhatAManagerWritesAndIsReadWhole) {
    TQWriteMemStream stream;
    sound().source.archiveTo(&stream);
    const auto memory = stream.getMemory();
    EXPECT_EQ(std::string(memory.begin(), memory.end()), sound().bytes);
    expectHarmless(sound().bytes, [](Reading& reading) {
        reading.expectExactlyWhatStandsBefore(sound().bytes.size());
        EXPECT_THAT(reading.messages.lines(), IsEmpty());
    });
}

#ifdef __SANITIZE_ADDRESS__
TEST_F(HostileArchive, TheMemoryThatReadingTakesIsCounted) {
    const std::size_t takenBefore = Memory::taken;
    const std::ptrdiff_t blocksBefore = Memory::blocks;
    const Reading reading(sound().bytes);
    EXPECT_GT(Memory::taken - takenBefore, sound().bytes.size());
    EXPECT_GT(Memory::blocks, blocksBefore);
}
#endif

TEST_F(HostileArchive, CutAnywhereItKeepsTheProjectionsThatAreComplete) {
    for (std::size_t length = 0; length < sound().bytes.size(); ++length) {
        SCOPED_TRACE(length);
        expectHarmless(sound().bytes.substr(0, length),
                       [length](Reading& reading) { reading.expectExactlyWhatStandsBefore(length); });
        ASSERT_FALSE(HasFailure());
    }
}

TEST_F(HostileArchive, CutAnywhereItChangesNothingThatIsThereAlready) {
    Reading reading(sound().bytes);
    std::vector<const TQProjection*> present;
    HashState<TQProjection> state;
    while (const TQProjection* projection = reading.manager.traverseUserProjs(&state)) {
        present.push_back(projection);
    }
    for (std::size_t length = 0; length < sound().bytes.size(); ++length) {
        reading.read(sound().bytes.substr(0, length), TQProjMgr::FromDocument);
        HashState<TQProjection> again;
        for (const TQProjection* projection : present) {
            ASSERT_EQ(reading.manager.traverseUserProjs(&again), projection) << length;
        }
        ASSERT_EQ(reading.manager.traverseUserProjs(&again), nullptr) << length;
    }
}

TEST_F(HostileArchive, WithAnyBitFlippedItKeepsWhatStandsBefore) {
    for (std::size_t bit = 0; bit < 8 * sound().bytes.size(); ++bit) {
        SCOPED_TRACE(bit);
        expectHarmless(sound().withBitFlipped(bit),
                       [bit](Reading& reading) { reading.expectWhatStandsBefore(bit / 8); });
        ASSERT_FALSE(HasFailure());
    }
}

TEST_F(HostileArchive, WithAnyBitFlippedItMergesHarmlesslyIntoTheSoundOne) {
    int owner = 0;
    Journal journal;
    constexpr std::uint32_t flagSets[] = {1, 1 | 8, 1 | 32, 1 | 4 | 32 | 64};
    constexpr std::size_t step = 7; // one bit in seven; an empty manager meets every one
    for (std::size_t bit = 0; bit < 8 * sound().bytes.size(); bit += step) {
        Reading reading(sound().bytes);
        for (const char* used : {"Bonne", "UTM", "Proj4 Library"}) {
            auto user = std::make_unique<JournalUser>("u", journal, &owner);
            user->used = reading.manager.projWithName(TQString(used), false);
            reading.manager.registerUser(std::move(user), false);
        }
        reading.read(sound().withBitFlipped(bit), flagSets[bit % std::size(flagSets)]);
        const std::vector<std::string> names = namesIn(reading.manager);
        ASSERT_THAT(names, IsSupersetOf(Reading::namesBefore(sound().bytes.size()))) << bit;
        ASSERT_LE(names.size(), sound().projections.size() + 1) << bit;
        reading.use();
        journal.clear();
    }
}

TEST_F(HostileArchive, CountsAndLengthsThatCannotBeTakeNoMemory) {
    ASSERT_GE(sound().lengths.size(), 2 + sound().ellipsoids.size() + 2 * sound().projections.size());
    for (const std::size_t offset : sound().lengths) {
        for (const std::uint32_t value : {0x7FFFFFFFU, 0xFFFFFFFFU, 0x80000000U, 0x7FFFFFFEU, 0x00FFFFFFU}) {
            SCOPED_TRACE(testing::Message() << value << " at " << offset);
            expectHarmless(sound().with(offset, value),
                           [offset](Reading& reading) { reading.expectWhatStandsBefore(offset); });
        }
    }
}

TEST_F(HostileArchive, MoreProjectionsThanThereAreEndWithTheLastOne) {
    const std::size_t count = sound().references.front() - sizeof(std::uint32_t);
    expectHarmless(sound().with(count, 0x7FFFFFFF),
                   [](Reading& reading) { reading.expectExactlyWhatStandsBefore(sound().bytes.size()); });
}

TEST_F(HostileArchive, NegativeCountsOfProjectionsAreNone) {
    const std::size_t count = sound().references.front() - sizeof(std::uint32_t);
    for (const std::uint32_t value : {0U, 0xFFFFFFFFU, 0x80000000U}) {
        expectHarmless(sound().with(count, value), [](Reading& reading) {
            EXPECT_THAT(namesIn(reading.manager), IsEmpty());
            EXPECT_THAT(reading.messages.lines(), IsEmpty());
        });
    }
}

// ---- References

TEST_F(HostileArchive, AReferenceToAProjectionThatWasReadEndsTheReading) {
    for (std::size_t index = 1; index < sound().references.size(); ++index) {
        for (std::uint32_t seen = 1; seen <= index; ++seen) {
            SCOPED_TRACE(testing::Message() << seen << " instead of " << index + 1);
            expectHarmless(sound().with(sound().references[index], seen), [index](Reading& reading) {
                reading.expectExactlyWhatStandsBefore(sound().references[index]);
                EXPECT_THAT(reading.messages.lines(),
                            ElementsAre("TQProjection *newProjFromStream(TQReadStream *stream): "
                                        "projection already unarchived ?!?\n"));
            });
        }
    }
}

TEST_F(HostileArchive, ReferencesToNothingEndTheReading) {
    constexpr std::uint32_t null = 0;
    for (std::size_t index = 0; index < sound().references.size(); ++index) {
        const auto own = static_cast<std::uint32_t>(index) + 1;
        for (const std::uint32_t reference : {null, kNewObject, own, own + 1, 0x7FFFFFFFU}) {
            SCOPED_TRACE(testing::Message() << reference << " instead of " << own);
            expectHarmless(sound().with(sound().references[index], reference), [index](Reading& reading) {
                reading.expectExactlyWhatStandsBefore(sound().references[index]);
            });
        }
    }
}

TEST_F(HostileArchive, ANumberThatIsNewTwiceEndsTheReading) {
    for (std::size_t index = 1; index < sound().references.size(); ++index) {
        const auto before = kNewObject + static_cast<std::uint32_t>(index);
        expectHarmless(sound().with(sound().references[index], before), [index](Reading& reading) {
            reading.expectExactlyWhatStandsBefore(sound().references[index]);
        });
    }
}

TEST_F(HostileArchive, NumbersMayComeInAnyOrder) {
    std::string bytes = sound().bytes;
    for (std::size_t index = 0; index < sound().references.size(); ++index) {
        const std::uint32_t number = 0xFFFFFFFFU - static_cast<std::uint32_t>(index);
        bytes.replace(sound().references[index], sizeof(number), field(number));
    }
    expectHarmless(bytes,
                   [](Reading& reading) { reading.expectExactlyWhatStandsBefore(sound().bytes.size()); });
}

// ---- Blocks

TEST_F(HostileArchive, EveryTypeCodeInEveryPlaceKeepsWhatStandsBefore) {
    for (std::size_t index = 0; index < sound().references.size(); ++index) {
        const std::size_t offset = sound().typeOffset(index);
        for (int code = -128; code < 128; ++code) {
            SCOPED_TRACE(testing::Message() << code << " in entry " << index);
            std::string bytes = sound().bytes;
            bytes[offset] = static_cast<char>(code);
            expectHarmless(bytes, [code, offset](Reading& reading) {
                reading.expectWhatStandsBefore(offset);
                if (std::ranges::find(kAllTypeCodes, code) == std::end(kAllTypeCodes)) {
                    reading.expectExactlyWhatStandsBefore(offset);
                    EXPECT_THAT(reading.messages.lines(),
                                ElementsAre("newProjFromStream(TQReadStream *): projection type " +
                                            std::to_string(code) + " is unknown.\n"));
                }
            });
            ASSERT_FALSE(HasFailure());
        }
    }
}

TEST_F(HostileArchive, UnknownVersionsAreReportedAndKeepWhatStandsBefore) {
    ASSERT_GE(sound().tags.size(), 2 + sound().ellipsoids.size() + sound().projections.size());
    for (const Tag& tag : sound().tags) {
        for (const int version : {5, 99, 32767, -1, -32768}) {
            SCOPED_TRACE(testing::Message() << tag.className << " " << version << " at " << tag.begin);
            const std::string otherTag = StreamBytes().tag(tag.className, version).bytes();
            expectHarmless(sound().bytes.substr(0, tag.begin) + otherTag + sound().bytes.substr(tag.end()),
                           [&tag, version](Reading& reading) {
                               reading.expectWhatStandsBefore(tag.begin);
                               EXPECT_THAT(
                                   reading.messages.lines(),
                                   Contains(ContainsRegex("^" + tag.className + "::.*: version " +
                                                          std::to_string(version) + " is unknown\\.\n$")));
                           });
            ASSERT_FALSE(HasFailure());
        }
    }
}

TEST_F(HostileArchive, AnUnknownVersionOfTheManagersBlockReadsNoProjection) {
    for (const Tag& tag : sound().tags) {
        if (tag.className == "TQProjMgr" || tag.className == "TQEllMgr") {
            std::string bytes = sound().bytes;
            bytes[tag.versionOffset()] = 1;
            expectHarmless(bytes, [&tag](Reading& reading) {
                EXPECT_THAT(namesIn(reading.manager), IsEmpty());
                const std::string message = tag.className == "TQEllMgr"
                                                ? "(TQReadStream *stream): version 1 is unknown.\n"
                                                : "(TQReadStream *, bool): version 1 is unknown.\n";
                EXPECT_THAT(reading.messages.lines(),
                            ElementsAre(tag.className + "::unarchiveFrom" + message));
            });
        }
    }
}

TEST_F(HostileArchive, ABlockWhereAnotherIsExpectedKeepsWhatStandsBefore) {
    for (const Tag& place : sound().tags) {
        const std::string before = sound().bytes.substr(0, place.begin);
        for (const Tag& other : sound().tags) {
            SCOPED_TRACE(testing::Message() << "what is at " << other.begin << ", at " << place.begin);
            expectHarmless(before + sound().bytes.substr(other.begin), [&](Reading& reading) {
                // What came before may take the place of itself under another type, being unused.
                const bool isNew = other.begin >= place.begin;
                reading.expectWhatStandsBefore(isNew ? place.begin : 0);
                EXPECT_THAT(namesIn(reading.manager), IsSupersetOf(Reading::namesBefore(place.begin)));
            });
            ASSERT_FALSE(HasFailure());
        }
        expectHarmless(before + sound().bytes.substr(place.end()),
                       [&place](Reading& reading) { reading.expectWhatStandsBefore(place.begin); });
        expectHarmless(before + sound().bytes.substr(place.begin, place.end() - place.begin) +
                           sound().bytes.substr(place.begin),
                       [&place](Reading& reading) { reading.expectWhatStandsBefore(place.begin); });
    }
}

TEST_F(HostileArchive, BlocksThatBeginInsideOneAnotherAThousandTimesAreNotFollowed) {
    for (const char* className : {"TQEllMgr", "TQProjMgr", "TQEllipsoid", "TQProjection", "TQPrMercTransv"}) {
        StreamBytes nested;
        for (int depth = 0; depth < 1000; ++depth) {
            nested.tag(className, 0);
        }
        for (const Tag& place : sound().tags) {
            expectHarmless(sound().bytes.substr(0, place.begin) + nested.bytes(),
                           [&place](Reading& reading) { reading.expectWhatStandsBefore(place.begin); });
        }
    }
}

TEST_F(HostileArchive, AnEllipsoidThatIsNotThereEndsTheReadingAndIsReported) {
    for (std::size_t index = 0; index < sound().projections.size(); ++index) {
        const std::size_t begin = sound().references[index];
        const std::size_t end = sound().projections[index].end;
        for (const Piece& known : sound().ellipsoids) {
            const std::size_t at = sound().bytes.find(StreamBytes().text(known.name).bytes(), begin);
            if (at >= end) {
                continue;
            }
            SCOPED_TRACE(sound().projections[index].name);
            std::string bytes = sound().bytes;
            std::string unknown = known.name;
            unknown.back() = '?';
            bytes.replace(bytes.find(known.name, at), unknown.size(), unknown);
            expectHarmless(bytes, [begin, &unknown](Reading& reading) {
                reading.expectExactlyWhatStandsBefore(begin);
                EXPECT_THAT(reading.messages.lines(),
                            ElementsAre("TQProjMgr::awakeOneProjection(): could not find ellipsoid named " +
                                        unknown + "\n"));
            });
        }
    }
}

TEST_F(HostileArchive, WhatFollowsTheBlocksIsLeftToOthers) {
    ByteStream stream(sound().bytes + "more");
    TQProjMgr manager(false);
    manager.unarchiveFrom(stream.get());
    EXPECT_EQ(stream.get()->bytesLeft(), 4U);
    EXPECT_FALSE(stream.get()->failed());
}

// ---- Many

namespace {

/// An archive of projections of these names without ellipsoid, each with another central meridian.
std::string archiveOf(const std::vector<std::string>& names) {
    std::string bytes = StreamBytes().tag("TQEllMgr", 0).integer(0).tag("TQProjMgr", 0).bytes();
    bytes += field(static_cast<std::uint32_t>(names.size()));
    std::uint32_t number = 0;
    for (const std::string& name : names) {
        const auto projection = tq_newProjectionOfType(5);
        HashTbl<TQProjParam> params(1);
        addParameter(params, "Nom", TQString(name.c_str()));
        addParameter(params, "lambda0", ++number * 0.001);
        projection->setParams(params);
        bytes += field(kNewObject + number);
        bytes += static_cast<char>(projection->projectionType());
        bytes += archivedBytes(*projection);
    }
    return bytes;
}

std::vector<std::string> numberedNames(int count) {
    std::vector<std::string> names;
    for (int number = 1; number <= count; ++number) {
        names.push_back("P_" + std::to_string(number));
    }
    return names;
}

/// Reads an archive into the manager of a "P" that is used.
/// @return the names that the manager has then
std::vector<std::string> namesAfterReading(const std::string& bytes) {
    EmptyManager test;
    test.observe("one", &test.one)->used = test.load("P", -1.0);
    ByteStream stream(bytes);
    stream.get()->setFlags(TQProjMgr::FromDocument | TQProjMgr::Silent);
    test.manager.unarchiveFrom(stream.get());
    EXPECT_TRUE(stream.isReadExactly());
    return namesIn(test.manager);
}

} // namespace

TEST_F(HostileArchive, AThousandProjectionsOfOneNameInUseGetTheSmallestNumbers) {
    constexpr int count = 1000;
    std::vector<std::string> expected = numberedNames(count);
    expected.push_back("P");
    EXPECT_THAT(namesAfterReading(archiveOf(std::vector<std::string>(count, "P"))),
                UnorderedElementsAreArray(expected));
}

TEST_F(HostileArchive, AThousandProjectionsOfOneBaseNameKeepTheirNames) {
    std::vector<std::string> expected = numberedNames(1000);
    const std::string bytes = archiveOf(expected);
    expected.push_back("P");
    EXPECT_THAT(namesAfterReading(bytes), UnorderedElementsAreArray(expected));
}
