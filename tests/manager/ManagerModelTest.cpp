#include "manager/TQProjMgr.h"
#include "testing/RandomNumbers.h"
#include "tests/manager/ManagerCase.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace {

/// What a projection of the model is.
struct Known {
    double meridian = 0.0; // which tells one definition from another
    bool isResource = false;
    bool isUserDefined = false;
};

/// The manager as its rules tell, without files, ownership and pointers: projections by name, what names mean
/// while a document is read, the projection that each observer uses, and how often they were told of a
/// change.
class Model {
  public:
    std::map<std::string, Known> projections;
    std::map<std::string, std::string> meanings; // of names while a document is read
    std::vector<std::optional<std::string>> uses{std::nullopt, std::nullopt, std::nullopt};
    std::set<std::string> placeholders;
    int changes = 0;

    std::optional<std::string> find(const std::string& name) const {
        const auto meaning = meanings.find(name);
        const std::string& meant = meaning != meanings.end() ? meaning->second : name;
        return projections.contains(meant) ? std::optional(meant) : std::nullopt;
    }

    bool load(const std::string& name, double meridian, bool isResource) {
        const std::optional<std::string> old = find(name);
        if (!old) {
            add(name, {meridian, isResource, false});
            return true;
        }
        const Known known = projections.at(*old);
        if (known.meridian == meridian || isResource) {
            return false;
        }
        const bool oldStays = isUsed(*old);
        if (!oldStays) {
            destroy(*old);
        }
        if (oldStays || projections.contains(name)) {
            const std::string other = freeName(name);
            meanings[name] = other;
            add(other, {meridian, false, false});
        } else {
            add(name, {meridian, false, known.isResource});
        }
        return true;
    }

    void destroy(const std::string& name) {
        projections.erase(name);
        std::erase_if(meanings, [&name](const auto& meaning) { return meaning.second == name; });
        for (auto& use : uses) {
            use = use == name ? std::nullopt : use; // the observers of this test let go
        }
        ++changes;
    }

    bool isUsed(const std::string& name) const { return std::ranges::find(uses, name) != uses.end(); }

    void clean() {
        std::vector<std::string> unused;
        for (const auto& [name, known] : projections) {
            if (!known.isResource && !isUsed(name)) {
                unused.push_back(name);
            }
        }
        std::ranges::for_each(unused, [this](const std::string& name) { destroy(name); });
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
};

/// An observer that uses the projection of a name, as long as the manager has it.
class ModelUser : public TQProjNotificationUser {
  public:
    ModelUser(TQProjMgr& manager, int& changes, void* owner)
        : TQProjNotificationUser(owner), _manager(manager), _changes(changes) {}

    bool isUsingProjection(const TQProjection* projection) const override {
        return projection != nullptr && projection == _used;
    }

    void projectionsDidChange() override {
        ++_changes;
        bool isThere = false;
        HashState<TQProjection> state;
        while (const TQProjection* projection = _manager.traverseUserProjs(&state)) {
            isThere = isThere || projection == _used;
        }
        _used = isThere ? _used : nullptr;
    }

    void replaceProjection(const TQProjection* old, TQProjection* replacement) override {
        _used = _used == old ? replacement : _used;
    }

    void use(const TQProjection* projection) { _used = projection; }

  private:
    TQProjMgr& _manager;
    int& _changes;
    const TQProjection* _used = nullptr;
};

/// A manager and its model, to which the same happens.
class Pair {
  public:
    explicit Pair(int seed) : _random(seed) {
        for (std::size_t index = 0; index < _owners.size(); ++index) {
            registerUser(index);
        }
    }

    void step() {
        switch (number(9)) {
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
            _manager.cleanNoResourcesUnusedProj();
            return _model.clean();
        case 7:
            _manager.reinitReadXREFTable();
            return _model.meanings.clear();
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
    }

  private:
    int number(int below) { return static_cast<int>(_random.between(0.0, static_cast<double>(below))); }
    std::string name() { return std::string(1, static_cast<char>('A' + number(4))); }

    static double meridianOf(const TQProjection& projection) {
        HashTbl<TQProjParam> table(1);
        projection.getParams(table);
        return table.lookup("lambda0")->doubleValue();
    }

    void registerUser(std::size_t index) {
        auto user = std::make_unique<ModelUser>(_manager, _changes[index], &_owners[index]);
        _users[index] = user.get();
        _manager.registerUser(std::move(user), true);
        _model.uses[index] = std::nullopt;
    }

    void load() {
        const std::string asked = name();
        const auto meridian = static_cast<double>(number(3));
        const bool isResource = number(4) == 0;
        const TQString path = _directory.fileWith("p.proj", mercatorFile(asked, meridian));
        ASSERT_EQ(_manager.loadProjection(path, isResource, TQProjMgr::Silent),
                  _model.load(asked, meridian, isResource));
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
        _users[index]->use(_manager.projWithName(TQString(asked.c_str()), false));
        _model.uses[index] = _model.find(asked);
    }

    void saveAndLoad() {
        const std::string asked = name();
        const TQString path = _directory.file("saved.proj");
        std::filesystem::remove(tq_filesystemPath(path));
        _manager.saveProjection(TQString(asked.c_str()), path);
        const std::optional<std::string> meant = _model.find(asked);
        ASSERT_EQ(std::filesystem::exists(tq_filesystemPath(path)), meant.has_value());
        const bool isLoaded = _manager.loadProjection(path, false, TQProjMgr::Silent);
        ASSERT_EQ(isLoaded, meant && _model.load(*meant, _model.projections.at(*meant).meridian, false));
    }

    void lookUp() {
        const std::string asked = name();
        const TQProjection* const found = _manager.projWithName(TQString(asked.c_str()), false);
        const std::optional<std::string> meant = _model.find(asked);
        ASSERT_EQ(found != nullptr, meant.has_value());
        if (found != nullptr) {
            ASSERT_EQ(found->name()->utf8(), *meant);
        } else {
            TQProjection* const placeholder = _manager.projWithName(TQString(asked.c_str()), true);
            ASSERT_NE(placeholder->isMemberOf("TQDummyProjection"), 0);
            ASSERT_EQ(_manager.projWithName(TQString(asked.c_str()), true), placeholder);
        }
    }

    RandomNumbers _random;
    TemporaryDirectory _directory;
    Model _model;
    std::array<int, 3> _owners{};
    std::array<int, 3> _changes{};
    std::array<ModelUser*, 3> _users{}; // the manager owns them
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
