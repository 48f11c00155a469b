#include "manager/TQProjMgr.h"
#include "support/TQReadMemStream.h"
#include "support/TQWriteMemStream.h"
#include "testing/RandomNumbers.h"
#include "tests/manager/ManagerCase.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <map>
#include <optional>
#include <ostream>
#include <set>
#include <string>
#include <vector>

using testing::Contains;

namespace {

constexpr int kOfPROJ = 127;

/// What tells one projection from another: its type, its number - the central meridian, or the last digit of
/// PROJ's definition - and the name of its ellipsoid, empty for none.
struct Definition {
    int type = 5;
    int number = 0;
    std::string ellipsoid;

    bool operator==(const Definition&) const = default;
};

std::ostream& operator<<(std::ostream& stream, const Definition& definition) {
    return stream << "type " << definition.type << ", number " << definition.number << ", ellipsoid '"
                  << definition.ellipsoid << "'";
}

/// What tells one ellipsoid from another of its name; without a translation it has no datum shift.
struct Size {
    int semiMajorAxis = 0;
    int translation = 0;

    bool operator==(const Size&) const = default;
};

std::ostream& operator<<(std::ostream& stream, const Size& size) {
    return stream << size.semiMajorAxis << " m, moved by " << size.translation << " m";
}

/// A projection of the model. Its number never changes and no other one ever has it.
struct Known {
    int id = 0;
    std::string name;
    Definition definition;
    bool isResource = false;
    bool isUserDefined = false;
};

/// A projection of a document.
struct Archived {
    std::string name;
    Definition definition;
};

struct Document {
    std::map<std::string, Size> ellipsoids;
    std::vector<Archived> projections;
};

struct Observed {
    bool isRegistered = false;
    int used = 0; ///< the number of a projection, or 0
    int changes = 0;
    int replacements = 0;
};

std::string text(const char* key) {
    return TQLocalizer::appLocalizedStringForKey(
               TQString((std::string("projectionDifferentFromResource_") + key).c_str()))
        .utf8();
}

/// The name without a last "_" and digits; none for other names with "_" and those that begin with their
/// last.
std::optional<std::string> baseName(const std::string& name) {
    const std::size_t mark = name.rfind('_');
    if (mark == std::string::npos) {
        return name;
    }
    const std::string digits = name.substr(mark + 1);
    const bool isNumber =
        !digits.empty() && std::ranges::all_of(digits, [](char c) { return c >= '0' && c <= '9'; });
    return mark > 0 && isNumber ? std::optional(name.substr(0, mark)) : std::nullopt;
}

/// A manager as its rules tell, without files, archives, ownership and pointers.
class Model {
  public:
    std::vector<Known> projections;
    std::map<std::string, int> meanings; ///< of names, while a document is read
    std::map<std::string, Size> ellipsoids;
    std::set<std::string> placeholders;
    std::array<Observed, 3> observers;
    std::vector<std::string> panels;

    Known* byId(int id) {
        const auto found = std::ranges::find(projections, id, &Known::id);
        return found != projections.end() ? &*found : nullptr;
    }

    Known* byName(const std::string& name) {
        const auto found = std::ranges::find(projections, name, &Known::name);
        return found != projections.end() ? &*found : nullptr;
    }

    /// What projWithName() finds.
    Known* find(const std::string& name) {
        const auto meaning = meanings.find(name);
        return meaning != meanings.end() ? byId(meaning->second) : byName(name);
    }

    bool isUsed(int id) const {
        return std::ranges::any_of(observers, [id](const Observed& observer) {
            return observer.isRegistered && observer.used == id;
        });
    }

    // ---- Files

    bool load(const Archived& file, const Size& size, bool isResource, std::uint32_t flags) {
        Known* const old = find(file.name);
        if (old != nullptr && old->definition == file.definition) {
            return false;
        }
        if (old != nullptr && isResource) {
            if (old->isResource && (flags & TQProjMgr::Silent) == 0) {
                showPanel("beg_userDef", file.name, "userDef_extra", "userDef_keepOld");
            }
            return false;
        }
        if (!file.definition.ellipsoid.empty()) {
            ellipsoids.emplace(file.definition.ellipsoid, size);
        }
        Known loaded{newId(), file.name, file.definition, isResource, false};
        if (old != nullptr) {
            makeRoom(loaded, *old, flags);
        }
        add(loaded);
        return true;
    }

    // ---- Documents

    bool isWritten(const Known& known, bool usedOnly) const {
        return usedOnly ? isUsed(known.id) : !known.isResource;
    }

    /// @return for each projection of the document the numbers of those that it may be now: there may be
    ///         several of its definition under numbered names
    std::vector<std::vector<int>> read(const Document& document, std::uint32_t flags) {
        meanings.clear();
        for (const auto& [name, size] : document.ellipsoids) {
            // One that is there takes the axes of another one, and keeps its datum shift.
            const auto [present, isNew] = ellipsoids.emplace(name, size);
            present->second.semiMajorAxis = size.semiMajorAxis;
        }
        std::vector<std::vector<int>> outcomes;
        for (const Archived& archived : document.projections) {
            outcomes.push_back(merge(archived, flags));
            _needed.insert(outcomes.back().front());
        }
        _needed.clear();
        return outcomes;
    }

    // ---- Placeholders

    /// The names that mean a projection by now are missing no more, of which everybody is told.
    void resolve() {
        meanings.clear();
        const auto found =
            std::erase_if(placeholders, [this](const std::string& name) { return byName(name) != nullptr; });
        for (Observed& observer : observers) {
            observer.replacements += observer.isRegistered ? static_cast<int>(found) : 0;
        }
    }

    // ---- Removing

    void destroy(int id) {
        std::erase_if(projections, [id](const Known& known) { return known.id == id; });
        std::erase_if(meanings, [id](const auto& meaning) { return meaning.second == id; });
        for (Observed& observer : observers) {
            observer.used = observer.used == id ? 0 : observer.used; // the observers of this test let go
        }
        tellChange();
    }

    void clean() {
        std::vector<int> unused;
        for (const Known& known : projections) {
            if (!known.isResource && !isUsed(known.id)) {
                unused.push_back(known.id);
            }
        }
        std::ranges::for_each(unused, [this](int id) { destroy(id); });
    }

    void add(const Known& known) {
        projections.push_back(known);
        tellChange();
    }

    void tellChange() {
        for (Observed& observer : observers) {
            observer.changes += observer.isRegistered ? 1 : 0;
        }
    }

    static int newId() {
        static int last = 0;
        return ++last;
    }

  private:
    std::set<int> _needed; // by the document that is being read

    std::vector<int> merge(const Archived& archived, std::uint32_t flags) {
        Known* const namesake = byName(archived.name);
        if (namesake != nullptr && namesake->definition == archived.definition) {
            return {namesake->id};
        }
        if (const std::vector<int> relatives = relativesOf(archived); !relatives.empty()) {
            meanings[archived.name] = relatives.front();
            return relatives;
        }
        if (namesake != nullptr && (flags & TQProjMgr::KeepPresent) != 0) {
            if ((flags & TQProjMgr::AnnounceReplacements) != 0) {
                showPanel("beg", archived.name, "userDef_extra", "userDef_keepOld");
            }
            return {namesake->id};
        }
        Known merged{newId(), archived.name, archived.definition, false, false};
        if (namesake != nullptr && isUsed(namesake->id) && !_needed.contains(namesake->id) &&
            (flags & TQProjMgr::ReplaceInObservers) != 0) {
            switchObservers(merged, *namesake);
        } else if (namesake != nullptr) {
            makeRoom(merged, *namesake, flags);
        }
        add(merged);
        return {merged.id};
    }

    std::vector<int> relativesOf(const Archived& archived) const {
        std::vector<int> relatives;
        for (const Known& known : projections) {
            if (baseName(archived.name) && baseName(known.name) == baseName(archived.name) &&
                known.definition == archived.definition) {
                relatives.push_back(known.id);
            }
        }
        return relatives;
    }

    void switchObservers(Known& merged, const Known& old) {
        merged.isUserDefined = old.isResource || old.isUserDefined;
        for (Observed& observer : observers) {
            observer.used = observer.used == old.id ? merged.id : observer.used;
            observer.replacements += observer.isRegistered ? 1 : 0;
        }
        destroy(old.id);
    }

    /// A used one stays, an unused one goes. It may have another name than the new one, and the name may be
    /// somebody else's: nothing is destroyed for a name that it does not have.
    void makeRoom(Known& added, const Known& old, std::uint32_t flags) {
        const Known* owner = &old;
        if (!isUsed(old.id) && !_needed.contains(old.id)) {
            const int id = old.id;
            const bool wasResource = old.isResource;
            const Known* const present = byName(added.name);
            const bool isNameFree = present == nullptr || present->id == id;
            if (isNameFree && (flags & TQProjMgr::AnnounceReplacements) != 0) {
                showPanel("beg", added.name, difference(wasResource), "userDef_keepNew");
            }
            destroy(id);
            added.isUserDefined = isNameFree && wasResource;
            owner = byName(added.name);
        }
        if (owner != nullptr) {
            takeOtherName(added, *owner, flags);
        }
    }

    void takeOtherName(Known& added, const Known& owner, std::uint32_t flags) {
        const std::string asked = added.name;
        for (int number = 1; added.name == asked || byName(added.name) != nullptr; ++number) {
            added.name = asked + "_" + std::to_string(number);
        }
        meanings[asked] = added.id;
        if ((flags & TQProjMgr::Silent) == 0) {
            showPanel("beg", asked, difference(owner.isResource), "userDef_renameNewAs", added.name);
        }
    }

    static const char* difference(bool isResource) {
        return isResource ? "userDef_extra" : "userDef_non_resource";
    }

    void showPanel(const char* beginning, const std::string& name, const char* differenceKey,
                   const char* decision, const std::string& newName = "") {
        panels.push_back("Warning|" + text(beginning) + name + text(differenceKey) + "\n" + text(decision) +
                         newName + "|Ok||");
    }
};

/// An observer that uses a projection as long as there is one.
class DocumentUser : public TQProjNotificationUser {
  public:
    DocumentUser(Observed& observed, void* owner) : TQProjNotificationUser(owner), _observed(observed) {}

    bool isUsingProjection(const TQProjection* projection) const override {
        return projection != nullptr && projection == _used.get();
    }

    void projectionsDidChange() override { ++_observed.changes; }

    void replaceProjection(const TQProjection* old, TQProjection* replacement) override {
        ++_observed.replacements;
        if (old == _used.get()) {
            _used = TQWeakPointer(replacement);
        }
    }

    void use(TQProjection* projection) { _used = TQWeakPointer(projection); }

  private:
    Observed& _observed; // counts
    TQWeakPointer<TQProjection> _used;
};

TQString tqString(const std::string& text) { return TQString(text.c_str()); }

Definition definitionOf(const TQProjection& projection) {
    HashTbl<TQProjParam> table(1);
    projection.getParams(table);
    const int type = projection.projectionType();
    const int number = type == kOfPROJ ? table.lookup("definition")->stringValue()->utf8().back() - '0'
                                       : static_cast<int>(table.lookup("lambda0")->doubleValue());
    const TQEllipsoid* const ellipsoid = projection.ellipsoid();
    return {type, number, ellipsoid != nullptr ? ellipsoid->name()->utf8() : ""};
}

/// A manager and its model, to which the same happens.
struct Side {
    Model model;
    std::array<Observed, 3> observed;
    std::array<int, 3> owners{};
    std::array<DocumentUser*, 3> users{}; // the manager owns them
    TQProjMgr manager{false};

    TQProjection* find(const std::string& name) { return manager.projWithName(tqString(name), false); }

    /// The names of the own projections in table order.
    std::vector<std::string> order() const {
        std::vector<std::string> names;
        HashState<TQProjection> state;
        while (const TQProjection* projection = manager.traverseUserProjs(&state)) {
            names.push_back(projection->name()->utf8());
        }
        return names;
    }

    void compareProjections() {
        const std::vector<std::string> names = order();
        ASSERT_EQ(names.size(), model.projections.size());
        for (const std::string& name : names) {
            const Known* const known = model.byName(name);
            ASSERT_NE(known, nullptr) << name;
        }
        HashState<TQProjection> state;
        while (const TQProjection* projection = manager.traverseUserProjs(&state)) {
            const Known& known = *model.byName(projection->name()->utf8());
            ASSERT_EQ(definitionOf(*projection), known.definition) << known.name;
            ASSERT_EQ(projection->isResource(), known.isResource) << known.name;
            ASSERT_EQ(projection->isUserDefined(), known.isUserDefined) << known.name;
            ASSERT_EQ(manager.isProjectionUsed(projection), model.isUsed(known.id)) << known.name;
            ASSERT_EQ(manager.willDeleteProjection(projection), !model.isUsed(known.id)) << known.name;
        }
    }

    void compareEllipsoids() const {
        std::map<std::string, Size> found;
        HashState<TQEllipsoid> state;
        while (const TQEllipsoid* ellipsoid = manager.ellipsoidManager().ellipsoids().next(state)) {
            found[ellipsoid->name()->utf8()] = {static_cast<int>(ellipsoid->semiMajorAxis()),
                                                static_cast<int>(ellipsoid->datumShiftParameters()[0])};
        }
        ASSERT_EQ(found, model.ellipsoids);
    }

    void compareObservers() const {
        for (std::size_t index = 0; index < observed.size(); ++index) {
            ASSERT_EQ(observed[index].changes, model.observers[index].changes) << index;
            ASSERT_EQ(observed[index].replacements, model.observers[index].replacements) << index;
        }
    }

    /// What a name means.
    void compareMeaning(const std::string& name) {
        const TQProjection* const found = find(name);
        const Known* const known = model.find(name);
        ASSERT_EQ(found != nullptr, known != nullptr) << name;
        if (found != nullptr) {
            ASSERT_EQ(found->name()->utf8(), known->name) << name;
        }
    }
};

/// Two managers with their models, between which documents are exchanged.
class Exchange {
  public:
    explicit Exchange(int seed) : _random(seed) {}

    void step() {
        Side& side = _sides[index(2)];
        switch (number(22)) {
        case 0:
        case 1:
        case 2:
        case 3:
        case 4:
            return load(side);
        case 5:
        case 6:
        case 7:
            return exchange(side, otherThan(side));
        case 8:
        case 9:
        case 10:
        case 11:
        case 19:
            return use(side);
        case 12:
            return destroy(side);
        case 13:
            return clean(side);
        case 14:
            return checkUnknown(side);
        case 15:
            return getFrom(side, otherThan(side));
        case 16:
            return create(side);
        case 17:
            return modify(side);
        case 18:
            return exportNecessary(side);
        default:
            return lookUp(side);
        }
    }

    void compare() {
        for (Side& side : _sides) {
            ASSERT_NO_FATAL_FAILURE(side.compareProjections());
            ASSERT_NO_FATAL_FAILURE(side.compareEllipsoids());
            ASSERT_NO_FATAL_FAILURE(side.compareObservers());
            for (int times = 0; times < 3; ++times) {
                ASSERT_NO_FATAL_FAILURE(side.compareMeaning(anyName()));
            }
        }
        std::vector<std::string> expected;
        for (Side& side : _sides) {
            expected.insert(expected.end(), side.model.panels.begin(), side.model.panels.end());
            side.model.panels.clear();
        }
        const std::vector<std::string> shown(_panels.shown().begin() + _panelsSeen, _panels.shown().end());
        _panelsSeen = std::ssize(_panels.shown());
        ASSERT_EQ(shown, expected);
    }

  private:
    int number(int below) { return static_cast<int>(_random.between(0.0, static_cast<double>(below))); }
    std::size_t index(int below) { return static_cast<std::size_t>(number(below)); }
    Side& otherThan(const Side& side) { return &side == &_sides[0] ? _sides[1] : _sides[0]; }
    bool isOneIn(int count) { return number(count) == 0; }

    template <class T, std::size_t count>
    const T& oneOf(const T (&choices)[count]) {
        return choices[index(count)];
    }

    std::string anyName() {
        static const std::string names[] = {"A", "A",  "A_1", "A_2", "A_12", "B",     "B", "B_1",
                                            "C", "_1", "C_",  "C_x", "D_1",  "D_1_1", "D"};
        return oneOf(names);
    }

    std::string anyEllipsoid() {
        static const std::string names[] = {"E", "F", "G"};
        return oneOf(names);
    }

    std::uint32_t anyFlags() {
        std::uint32_t flags = 0;
        for (const std::uint32_t flag : {1U, 4U, 8U, 32U, 64U}) {
            flags |= isOneIn(flag == 8 ? 4 : 2) ? flag : 0;
        }
        return flags;
    }

    /// Ellipsoids of one name differ from file to file, by more than what counts as equal.
    Size anySize() {
        static const Size sizes[] = {
            {6378137, 0}, {6378200, 0}, {6377397, 0}, {6378137, 100}, {6377397, 250}};
        return oneOf(sizes);
    }

    // ---- Files

    void load(Side& side) {
        if (isOneIn(2)) { // as applications do before
            side.manager.reinitReadXREFTable();
            side.model.meanings.clear();
        }
        const bool isOfPROJ = isOneIn(6);
        const int type = isOfPROJ ? kOfPROJ : (isOneIn(3) ? 4 : 5);
        const Archived file{anyName(), {type, number(4), isOfPROJ ? "" : anyEllipsoid()}};
        const Size size = anySize();
        const bool isResource = isOneIn(4);
        const std::uint32_t flags = anyFlags();
        const TQString path =
            _directory.fileWith("p.proj", isOfPROJ ? projFile(file) : nativeFile(file, size));
        ASSERT_EQ(side.manager.loadProjection(path, isResource, flags),
                  side.model.load(file, size, isResource, flags));
    }

    static std::string projFile(const Archived& file) {
        return "TQFile v1\n127\nTQPrProj4 v0\n" + file.name + "\nEPSG:3263" +
               std::to_string(file.definition.number) + "\n";
    }

    static std::string nativeFile(const Archived& file, const Size& size) {
        const std::string shift =
            size.translation == 0 ? "0\n"
                                  : "1\n6378137\n0.0033528\n" + std::to_string(size.translation) + " 10 20\n";
        return "TQFile v1\n" + std::to_string(file.definition.type) + "\nTQPrMercator v1\nTQProjection v1\n" +
               file.name + "\nTQEllipsoid v2\n" + file.definition.ellipsoid + "\n" +
               std::to_string(size.semiMajorAxis) + "\n0.00669438\n" + shift +
               std::to_string(file.definition.number) + "\n0\n0\n0\n1\n";
    }

    void exportNecessary(Side& side) {
        const TemporaryDirectory parent;
        const TQString directory = parent.file("exported");
        const auto isNecessary = [&side](const Known& known) {
            return !known.isResource || side.model.isUsed(known.id);
        };
        const auto count = std::ranges::count_if(side.model.projections, isNecessary);
        ASSERT_TRUE(side.manager.archiveNecessaryProj(directory));
        ASSERT_EQ(parent.entries().size(), count > 0 ? 1U : 0U) << "no directory without a file";
        if (count > 0) {
            const std::filesystem::directory_iterator files(parent.path() / "exported");
            ASSERT_EQ(std::distance(begin(files), end(files)), count);
        }
    }

    // ---- Documents

    void exchange(Side& from, Side& to) {
        const bool usedOnly = isOneIn(2);
        const Document document = documentOf(from, usedOnly);
        const std::uint32_t flags = anyFlags();
        TQWriteMemStream written;
        from.manager.archiveTo(&written, usedOnly);
        for (const Archived& archived : document.projections) {
            written.writeObjReference(
                ownProjection(from, archived.name)); // as what follows in a document does
        }
        TQReadMemStream stream(written.getMemory().data(), written.getMemory().size(), 0, flags);
        to.manager.unarchiveFrom(&stream);
        const std::vector<std::vector<int>> outcomes = to.model.read(document, flags);
        for (std::size_t i = 0; i < outcomes.size(); ++i) {
            ASSERT_NO_FATAL_FAILURE(adoptMeaning(to, document.projections[i].name, outcomes[i]));
            ASSERT_NO_FATAL_FAILURE(compareReference(to, stream, outcomes[i]));
        }
        ASSERT_FALSE(stream.failed());
        ASSERT_EQ(stream.bytesLeft(), 0U);
    }

    /// Table order is the order of the archive.
    static Document documentOf(Side& side, bool usedOnly) {
        Document document{side.model.ellipsoids, {}};
        for (const std::string& name : side.order()) {
            const Known& known = *side.model.byName(name);
            if (side.model.isWritten(known, usedOnly)) {
                document.projections.push_back({name, known.definition});
            }
        }
        return document;
    }

    static TQProjection* ownProjection(Side& side, const std::string& name) {
        HashState<TQProjection> state;
        TQProjection* projection = side.manager.traverseUserProjs(&state);
        while (projection != nullptr && projection->name()->utf8() != name) {
            projection = side.manager.traverseUserProjs(&state);
        }
        return projection;
    }

    /// A name of the document means one of several equal projections; which one is the manager's choice.
    static void adoptMeaning(Side& side, const std::string& name, const std::vector<int>& outcome) {
        if (outcome.size() < 2) {
            return;
        }
        const TQProjection* const found = side.find(name);
        const Known* const chosen = found != nullptr ? side.model.byName(found->name()->utf8()) : nullptr;
        const bool isOneOfThem = chosen != nullptr && std::ranges::find(outcome, chosen->id) != outcome.end();
        if (isOneOfThem) {
            side.model.meanings[name] = chosen->id;
            return;
        }
        // The one chosen gave its place to another one of the document.
        ASSERT_TRUE(std::ranges::any_of(outcome, [&](int id) { return side.model.byId(id) == nullptr; }));
        side.model.meanings.erase(name);
    }

    /// What else of the document refers to a projection finds what has become of it, unless that is gone too.
    static void compareReference(Side& side, TQReadStream& stream, const std::vector<int>& outcome) {
        std::int32_t id = 0;
        ASSERT_GE(stream.readObjReference(id), 1);
        if (!std::ranges::all_of(outcome, [&](int each) { return side.model.byId(each) != nullptr; })) {
            return;
        }
        std::vector<const void*> expected;
        for (const int each : outcome) {
            expected.push_back(ownProjection(side, side.model.byId(each)->name));
        }
        ASSERT_THAT(expected, Contains(stream.objForReference(id)));
    }

    // ---- The others

    void use(Side& side) {
        const std::size_t slot = index(3);
        Observed& expected = side.model.observers[slot];
        if (!expected.isRegistered || isOneIn(4)) {
            auto user = std::make_unique<DocumentUser>(side.observed[slot], &side.owners[slot]);
            side.users[slot] = user.get();
            side.manager.registerUser(std::move(user), true);
            expected.isRegistered = true;
            expected.used = 0;
        } else if (isOneIn(6)) {
            side.manager.unregisterUser(&side.owners[slot]);
            expected.isRegistered = false;
            expected.used = 0;
            return;
        }
        const std::string name = anyName();
        side.users[slot]->use(side.find(name));
        const Known* const used = side.model.find(name);
        expected.used = used != nullptr ? used->id : 0;
    }

    void destroy(Side& side) {
        const std::string name = anyName();
        const Known* const known = side.model.byName(name);
        side.manager.destroy(tqString(name));
        if (known != nullptr) {
            side.model.destroy(known->id);
        } else {
            side.model.tellChange();
        }
    }

    void clean(Side& side) {
        if (isOneIn(3)) {
            side.manager.cleanNoResourcesUnusedProj();
            side.model.clean();
        }
    }

    void checkUnknown(Side& side) {
        const bool before = TQSetBatchMode(true);
        side.model.resolve();
        ASSERT_EQ(side.manager.checkAndResetUnknowProjection(false), side.model.placeholders.empty());
        TQSetBatchMode(before);
    }

    void lookUp(Side& side) {
        const std::string name = anyName();
        ASSERT_NO_FATAL_FAILURE(side.compareMeaning(name));
        if (side.model.find(name) == nullptr && isOneIn(8)) {
            const TQProjection* const placeholder = side.manager.projWithName(tqString(name), true);
            ASSERT_NE(placeholder->isMemberOf("TQDummyProjection"), 0);
            ASSERT_EQ(side.manager.projWithName(tqString(name), true), placeholder);
            side.model.placeholders.insert(name);
        }
    }

    void getFrom(Side& side, Side& source) {
        const std::vector<std::string> names = source.order();
        side.model.meanings.clear();
        if (names.empty()) {
            side.manager.reinitReadXREFTable();
            ASSERT_EQ(side.manager.getProjectionWithNameFromGeorefMgr(nullptr, &source.manager), nullptr);
            return;
        }
        const std::string& name = names[index(static_cast<int>(names.size()))];
        const Known& wanted = *source.model.byName(name);
        const TQProjection* const found =
            side.manager.getProjectionWithNameFromGeorefMgr(ownProjection(source, name), &source.manager);
        if (side.model.byName(name) == nullptr) {
            const std::string& ellipsoid = wanted.definition.ellipsoid;
            if (!ellipsoid.empty()) {
                side.model.ellipsoids.emplace(ellipsoid, source.model.ellipsoids[ellipsoid]);
            }
            side.model.add({Model::newId(), name, wanted.definition, false, false});
        }
        ASSERT_NE(found, nullptr);
        ASSERT_EQ(found, ownProjection(side, name));
    }

    // ---- Parameters

    template <class Value>
    static void put(HashTbl<TQProjParam>& table, const char* name, const Value& value) {
        table.remove(TQString(name));
        table.add(std::make_unique<TQProjParam>(TQString(name), value, TQString()), TQString(name));
    }

    /// An ellipsoid for a table, which may be unknown; none leaves it out.
    std::optional<std::string> ellipsoidForTable(HashTbl<TQProjParam>& table) {
        table.remove(TQString("Ellipsoide"));
        if (isOneIn(4)) {
            return std::nullopt;
        }
        const std::string name = isOneIn(5) ? "unknown" : anyEllipsoid();
        put(table, "Ellipsoide", tqString(name));
        return name;
    }

    static std::string registeredEllipsoid(const Side& side, const std::optional<std::string>& name) {
        return name && side.model.ellipsoids.contains(*name) ? *name : "";
    }

    /// The caller sees to it that the name is free.
    std::optional<std::string> freeName(Side& side) {
        const std::string name = anyName();
        return side.model.byName(name) == nullptr ? std::optional(name) : std::nullopt;
    }

    void create(Side& side) {
        const std::optional<std::string> name = freeName(side);
        if (!name) {
            return;
        }
        static const int types[] = {1, 4, 4, 5, 5, 14, -1};
        const int type = oneOf(types);
        const int meridian = number(4);
        HashTbl<TQProjParam> table(1);
        put(table, "Nom", tqString(*name));
        put(table, "lambda0", static_cast<double>(meridian));
        put(table, "X0", 0.0); // as in the files, and not by default
        const std::optional<std::string> ellipsoid = ellipsoidForTable(table);
        const bool hasType = !isOneIn(8);
        if (hasType) {
            put(table, "Type", type);
        }
        const TQProjection* const created = side.manager.createProjFromParams(&table);
        const bool isKnown = hasType && type != 14 && type != -1;
        ASSERT_EQ(created != nullptr, isKnown);
        if (isKnown) {
            side.model.add({Model::newId(), *name, {type, meridian, registeredEllipsoid(side, ellipsoid)}});
            ASSERT_EQ(created, ownProjection(side, *name));
        }
    }

    void modify(Side& side) {
        const std::vector<std::string> names = side.order();
        if (names.empty()) {
            return;
        }
        const std::string name = names[index(static_cast<int>(names.size()))];
        TQProjection* const projection = ownProjection(side, name);
        Known& known = *side.model.byName(name);
        HashTbl<TQProjParam> table(1);
        projection->getParams(table);
        table.remove(TQString("definition")); // which PROJ would have to take apart each time
        const std::optional<std::string> other = isOneIn(2) ? freeName(side) : std::nullopt;
        put(table, "Nom", tqString(other.value_or(name)));
        Definition edited{known.definition.type, number(4), ""};
        put(table, "lambda0", static_cast<double>(edited.number));
        std::optional<std::string> ellipsoid = known.definition.ellipsoid;
        if (!isOneIn(2)) { // or else the one that it has
            ellipsoid = ellipsoidForTable(table);
        }
        edited.ellipsoid = registeredEllipsoid(side, ellipsoid);
        const bool isOfPROJ = known.definition.type == kOfPROJ;
        side.manager.modifyProjFromParams(projection, &table);
        if (known.isResource && !isOfPROJ && edited == known.definition) {
            return; // it stays a resource under its name
        }
        const bool hasEllipsoid = table.lookup("Ellipsoide") != nullptr;
        if (!isOfPROJ) {
            known.definition.number = edited.number;
            known.definition.ellipsoid = hasEllipsoid ? edited.ellipsoid : known.definition.ellipsoid;
        }
        known.name = other.value_or(name);
        known.isResource = false;
        known.isUserDefined = false;
        side.model.tellChange();
    }

    RandomNumbers _random;
    TemporaryDirectory _directory;
    CapturedPanels _panels;
    std::ptrdiff_t _panelsSeen = 0;
    std::array<Side, 2> _sides;
};

} // namespace

TEST(DocumentModel, ThousandsOfRandomStepsBetweenTwoManagersDoWhatTheModelDoes) {
    const CapturedMessages messages;
    for (int seed = 1; seed <= 60; ++seed) {
        Exchange exchange(seed);
        for (int step = 0; step < 300; ++step) {
            ASSERT_NO_FATAL_FAILURE(exchange.step()) << "seed " << seed << ", step " << step;
            ASSERT_NO_FATAL_FAILURE(exchange.compare()) << "seed " << seed << ", step " << step;
        }
    }
}

// ---- What a document's own projections do to one another

namespace {

/// A manager that reads a document of two projections, of the first of which the second takes the place.
struct DocumentOfTwo : EmptyManager {
    CapturedMessages messages;

    /// Reads a document of "P" and "P_1", told apart by their meridians, and references to both.
    /// @return the objects that the references stand for
    std::array<const void*, 2> read(double meridianOfP, double meridianOfP1, std::uint32_t flags) {
        EmptyManager source;
        const std::array<const TQProjection*, 2> archived{source.load("P", meridianOfP),
                                                          source.load("P_1", meridianOfP1)};
        TQWriteMemStream written;
        source.manager.ellipsoidManager().archiveTo(&written);
        written.declareVersion("TQProjMgr", 0);
        written.write(static_cast<std::int32_t>(archived.size()));
        for (const TQProjection* projection : archived) { // not in table order: "P" comes first
            written.writeObjReference(projection);
            written.write(static_cast<char>(projection->projectionType()));
            projection->archiveTo(&written);
        }
        TQReadMemStream stream(written.getMemory().data(), written.getMemory().size(), 0, flags);
        manager.unarchiveFrom(&stream);
        return {stream.objForReference(1), stream.objForReference(2)};
    }

    bool isRegistered(const void* object) const {
        HashState<TQProjection> state;
        const TQProjection* projection = manager.traverseUserProjs(&state);
        while (projection != nullptr && projection != object) {
            projection = manager.traverseUserProjs(&state);
        }
        return projection != nullptr;
    }

    /// Both projections of the document must be there, whatever they are called.
    void expectBoth(const std::array<const void*, 2>& objects) const {
        EXPECT_TRUE(isRegistered(objects[0]));
        EXPECT_TRUE(isRegistered(objects[1]));
        EXPECT_NE(objects[0], objects[1]);
    }
};

} // namespace

TEST(DocumentOfTwo, AProjectionThatTookTheNameOfTheNextStays) {
    DocumentOfTwo test;
    test.observe("one", &test.one)->used = test.load("P", 0.0);
    test.expectBoth(test.read(1.0, 2.0, TQProjMgr::FromDocument | TQProjMgr::Silent));
}

TEST(DocumentOfTwo, AnEqualProjectionOfTheNameOfTheNextStays) {
    DocumentOfTwo test;
    test.load("P_1", 1.0);
    test.expectBoth(test.read(1.0, 2.0, TQProjMgr::FromDocument));
}

TEST(DocumentOfTwo, ObserversAreNotSwitchedFromAProjectionOfTheDocument) {
    DocumentOfTwo test;
    test.observe("one", &test.one)->used = test.load("P_1", 1.0);
    test.expectBoth(test.read(1.0, 2.0, TQProjMgr::FromDocument | TQProjMgr::ReplaceInObservers));
}
