#include "manager/TQProjMgr.h"
#include "testing/RandomNumbers.h"
#include "tests/manager/ManagerCase.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace {

constexpr const char* kExternalName = "\tEPSG_32632";

bool isExternal(const std::string& name) { return name.starts_with('\t'); }

/// What a projection of the model is.
struct Known {
    double meridian = 0.0; // which tells one definition from another
    bool isResource = false;
    bool isUserDefined = false;
};

/// What an observer of the model uses.
struct Use {
    std::string name; // empty for nothing
    bool isPlaceholder = false;

    bool operator==(const Use&) const = default;
};

/// The manager as its rules tell, without ownership and pointers: projections by name, what names mean while
/// a document is read, the names that have a placeholder, the files of the resources, what each observer
/// uses, how often they were told of a change, and how many panels were shown.
class Model {
  public:
    std::map<std::string, Known> projections;
    std::map<std::string, std::string> meanings; // of names while a document is read
    std::set<std::string> placeholders;
    std::map<std::string, double> files; // the meridians in the files of the resources, by name
    std::array<Use, 3> uses;
    int changes = 0;
    std::size_t panels = 0;

    std::optional<std::string> find(const std::string& name) const {
        const auto meaning = meanings.find(name);
        const std::string& meant = meaning != meanings.end() ? meaning->second : name;
        return isExternal(name) || projections.contains(meant) ? std::optional(meant) : std::nullopt;
    }

    bool load(const std::string& name, double meridian, bool isResource, std::uint32_t flags) {
        const bool isSilent = (flags & TQProjMgr::Silent) != 0;
        const bool isAnnounced = (flags & TQProjMgr::AnnounceReplacements) != 0;
        const std::optional<std::string> old = find(name);
        if (!old) {
            add(name, {meridian, isResource, false});
            return true;
        }
        const Known known = projections.at(*old);
        if (known.meridian == meridian) {
            return false;
        }
        if (isResource) {
            panels += known.isResource && !isSilent ? 1 : 0;
            return false;
        }
        const bool oldStays = isUsed(*old);
        if (!oldStays) {
            destroy(*old);
        }
        if (oldStays || projections.contains(name)) {
            const std::string other = freeName(name);
            meanings[name] = other;
            panels += isSilent ? 0 : 1;
            add(other, {meridian, false, false});
        } else {
            panels += isAnnounced ? 1 : 0;
            add(name, {meridian, false, known.isResource});
        }
        return true;
    }

    void destroy(const std::string& name) {
        projections.erase(name);
        std::erase_if(meanings, [&name](const auto& meaning) { return meaning.second == name; });
        if (!isExternal(name)) {
            std::ranges::replace(uses, Use{name}, Use{}); // the observers of this test let go
        }
        ++changes;
    }

    bool isUsed(const std::string& name) const { return std::ranges::find(uses, Use{name}) != uses.end(); }

    void clean() {
        std::vector<std::string> unused;
        for (const auto& [name, known] : projections) {
            if (!known.isResource && !isUsed(name)) {
                unused.push_back(name);
            }
        }
        std::ranges::for_each(unused, [this](const std::string& name) { destroy(name); });
    }

    void saveIntoResources(const std::string& name) {
        Known& known = projections.at(name);
        files[name] = known.meridian;
        known.isResource = true;
        known.isUserDefined = false;
    }

    /// What is there gives way; the user is asked for what is missing, lets it be looked for once, and gives
    /// up the next time.
    bool resolve() {
        meanings.clear();
        std::erase_if(placeholders, [this](const std::string& name) { return giveWay(name); });
        if (placeholders.empty()) {
            return true;
        }
        ++panels;
        for (const auto& [name, meridian] : files) {
            load(name, meridian, true, 0);
        }
        std::erase_if(placeholders, [this](const std::string& name) { return giveWay(name); });
        panels += placeholders.empty() ? 0 : 1;
        return placeholders.empty();
    }

  private:
    void add(const std::string& name, const Known& known) {
        projections[name] = known;
        ++changes;
    }

    std::string freeName(const std::string& name) const {
        for (int number = 1;; ++number) {
            std::string candidate = name + "_" + std::to_string(number);
            if (!projections.contains(candidate)) {
                return candidate;
            }
        }
    }

    /// Whether a placeholder has found its projection, which is used in its place then.
    bool giveWay(const std::string& name) {
        if (!projections.contains(name)) {
            return false;
        }
        std::ranges::replace(uses, Use{name, true}, Use{name});
        return true;
    }
};

/// An observer that uses a projection as long as it lives.
class ModelUser : public TQProjNotificationUser {
  public:
    ModelUser(int& changes, void* owner) : TQProjNotificationUser(owner), _changes(changes) {}

    bool isUsingProjection(const TQProjection* projection) const override {
        return projection != nullptr && projection == _used;
    }

    void projectionsDidChange() override {
        ++_changes;
        _used = _life.expired() ? nullptr : _used;
    }

    void replaceProjection(const TQProjection* old, TQProjection* replacement) override {
        if (_used == old) {
            use(*replacement);
        }
    }

    void use(const TQProjection& projection) {
        _used = &projection;
        _life = projection.lifeToken();
    }

  private:
    int& _changes;
    const TQProjection* _used = nullptr;
    std::weak_ptr<const void> _life;
};

/// A manager and its model, to which the same happens.
class Pair {
  public:
    explicit Pair(int seed) : _random(seed) {
        for (std::size_t index = 0; index < _owners.size(); ++index) {
            registerUser(index);
        }
        _panels.otherAnswer = [this] { return answer(); };
    }

    void step() {
        switch (number(11)) {
        case 0:
        case 1:
        case 2:
            return load();
        case 3:
            return destroy();
        case 4:
            return use();
        case 5:
            return saveAndLoad();
        case 6:
            return saveIntoResources();
        case 7:
            _manager.cleanNoResourcesUnusedProj();
            return _model.clean();
        case 8:
            _manager.reinitReadXREFTable();
            return _model.meanings.clear();
        case 9:
            return resolve();
        default:
            return lookUp();
        }
    }

    void compare() {
        std::map<std::string, Known> found;
        HashState<TQProjection> state;
        while (const TQProjection* projection = _manager.traverseUserProjs(&state)) {
            found[projection->name()->utf8()] = {meridianOf(*projection), projection->isResource(),
                                                 projection->isUserDefined()};
            ASSERT_EQ(_manager.isProjectionUsed(projection), _model.isUsed(projection->name()->utf8()));
        }
        ASSERT_EQ(found.size(), _model.projections.size());
        for (const auto& [name, known] : _model.projections) {
            ASSERT_TRUE(found.contains(name)) << name;
            ASSERT_EQ(found[name].meridian, known.meridian) << name;
            ASSERT_EQ(found[name].isResource, known.isResource) << name;
            ASSERT_EQ(found[name].isUserDefined, known.isUserDefined) << name;
        }
        for (const int changes : _changes) {
            ASSERT_EQ(changes, _model.changes);
        }
        ASSERT_EQ(_panels.shown().size(), _model.panels);
    }

  private:
    int number(int below) { return static_cast<int>(_random.between(0.0, static_cast<double>(below))); }
    std::string ownName() { return std::string(1, static_cast<char>('A' + number(4))); }
    std::string name() { return number(6) == 0 ? kExternalName : ownName(); }

    TQProjection* find(const std::string& name, bool createIfMissing = false) {
        return _manager.projWithName(TQString(name.c_str()), createIfMissing);
    }

    static double meridianOf(const TQProjection& projection) {
        HashTbl<TQProjParam> table(1);
        projection.getParams(table);
        return table.lookup("lambda0")->doubleValue();
    }

    /// Only the panel that tells what is missing asks something.
    TQAlertButton answer() {
        const bool isQuestion = _panels.shown().back().ends_with("|OK|Cancel|");
        return isQuestion && std::exchange(_hasLookedAgain, true) ? TQAlertAlternate : TQAlertDefault;
    }

    void registerUser(std::size_t index) {
        auto user = std::make_unique<ModelUser>(_changes[index], &_owners[index]);
        _users[index] = user.get();
        _manager.registerUser(std::move(user), true);
        _model.uses[index] = {};
    }

    void load() {
        const std::string asked = ownName();
        const auto meridian = static_cast<double>(number(3));
        const bool isResource = number(4) == 0;
        const std::uint32_t flags = std::array{0U, 4U, 64U, 68U}[static_cast<std::size_t>(number(4))];
        const TQString path = _directories.userFile("p.proj", mercatorFile(asked, meridian));
        ASSERT_EQ(_manager.loadProjection(path, isResource, flags),
                  _model.load(asked, meridian, isResource, flags));
    }

    void destroy() {
        const std::string gone = name();
        _manager.destroy(TQString(gone.c_str()));
        _model.destroy(gone);
    }

    void use() {
        const auto index = static_cast<std::size_t>(number(3));
        if (number(4) == 0) {
            return registerUser(index);
        }
        const std::string asked = name();
        const std::optional<std::string> meant = _model.find(asked);
        _users[index]->use(*find(asked, true));
        _model.uses[index] = meant ? Use{*meant} : Use{asked, true};
        if (!meant) {
            _model.placeholders.insert(asked);
        }
    }

    void saveAndLoad() {
        const std::string asked = name();
        const TQString path = _directories.users().file("saved.proj");
        std::filesystem::remove(tq_filesystemPath(path));
        _manager.saveProjection(TQString(asked.c_str()), path);
        const std::optional<std::string> meant = _model.find(asked);
        ASSERT_EQ(std::filesystem::exists(tq_filesystemPath(path)), meant.has_value());
        ASSERT_FALSE(_manager.loadProjection(path, false, 0)) << "it is there already";
    }

    void saveIntoResources() {
        const std::string asked = ownName();
        if (const std::optional<std::string> meant = _model.find(asked)) {
            const TQString path = _directories.resource(*meant + ".proj", "");
            _manager.saveProjection(TQString(asked.c_str()), path);
            _model.saveIntoResources(*meant);
            ASSERT_EQ(*_manager.resourcePath(TQString(asked.c_str())), path);
        }
    }

    /// Now and then the user brings a file before.
    void resolve() {
        if (number(2) == 0) {
            const std::string brought = ownName();
            const auto meridian = static_cast<double>(number(3));
            _directories.resource(brought + ".proj", mercatorFile(brought, meridian));
            _model.files[brought] = meridian;
        }
        _hasLookedAgain = false;
        ASSERT_EQ(_manager.checkAndResetUnknowProjection(true), _model.resolve());
    }

    void lookUp() {
        const std::string asked = name();
        const TQProjection* const found = find(asked);
        const std::optional<std::string> meant = _model.find(asked);
        ASSERT_EQ(found != nullptr, meant.has_value());
        if (isExternal(asked)) {
            _external = _external != nullptr ? _external : found;
            ASSERT_EQ(found, _external) << "it is made once";
        } else if (found != nullptr) {
            ASSERT_EQ(found->name()->utf8(), *meant);
        } else {
            const TQProjection* const placeholder = find(asked, true);
            ASSERT_NE(placeholder->isMemberOf("TQDummyProjection"), 0);
            ASSERT_EQ(find(asked, true), placeholder);
            _model.placeholders.insert(asked);
        }
    }

    RandomNumbers _random;
    ManagerTest _directories;
    CapturedPanels _panels;
    bool _hasLookedAgain = false;
    Model _model;
    std::array<int, 3> _owners{};
    std::array<int, 3> _changes{};
    std::array<ModelUser*, 3> _users{};      // the manager owns them
    const TQProjection* _external = nullptr; // owned likewise
    TQProjMgr _manager{false};
};

} // namespace

TEST(ManagerModel, ThousandsOfRandomStepsDoWhatTheModelDoes) {
    const CapturedMessages messages;
    for (int seed = 1; seed <= 40; ++seed) {
        Pair pair(seed);
        for (int step = 0; step < 300; ++step) {
            ASSERT_NO_FATAL_FAILURE(pair.step()) << "seed " << seed << ", step " << step;
            ASSERT_NO_FATAL_FAILURE(pair.compare()) << "seed " << seed << ", step " << step;
        }
    }
}
