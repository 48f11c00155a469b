#pragma once

#include "manager/TQProjMgr.h"
#include "support/TQAlertPanel.h"
#include "support/TQLocalizer.h"
#include "testing/CapturedMessages.h"
#include "testing/ProcessState.h"
#include "testing/TemporaryDirectory.h"

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

/// The panels that are shown while this lives, and the answers they get.
class CapturedPanels {
  public:
    CapturedPanels()
        : _before(TQSetAlertPanelHandler([this](const TQAlertPanel& panel) { return answer(panel); })) {}
    CapturedPanels(const CapturedPanels&) = delete;
    CapturedPanels& operator=(const CapturedPanels&) = delete;
    ~CapturedPanels() { TQSetAlertPanelHandler(std::move(_before)); }

    /// What each panel showed: title, message and buttons, separated by bars.
    const std::vector<std::string>& shown() const { return _shown; }

    /// What happens while the next panels are shown, which answer what it answers.
    std::deque<std::function<TQAlertButton()>> answers;

    /// The same for the panels after these.
    std::function<TQAlertButton()> otherAnswer = [] { return TQAlertDefault; };

  private:
    TQAlertButton answer(const TQAlertPanel& panel) {
        std::string text;
        for (const std::u16string* piece : {&panel.title, &panel.message, &panel.defaultButton,
                                            &panel.alternateButton, &panel.otherButton}) {
            text += (text.empty() ? "" : "|") + TQString(piece->c_str()).utf8();
        }
        _shown.push_back(text);
        if (answers.empty()) {
            return otherAnswer();
        }
        const auto next = std::move(answers.front());
        answers.pop_front();
        return next();
    }

    std::vector<std::string> _shown;
    TQAlertPanelHandler _before;
};

/// What the observers of a test were told, in order.
using Journal = std::vector<std::string>;

/// An observer that writes down what it is told.
class JournalUser : public TQProjNotificationUser {
  public:
    JournalUser(std::string name, Journal& journal, void* owner = nullptr)
        : TQProjNotificationUser(owner), _name(std::move(name)), _journal(journal) {}
    ~JournalUser() override { _journal.push_back(_name + " dies"); }

    bool isUsingProjection(const TQProjection* projection) const override {
        _journal.push_back(_name + " asked");
        onQuestion(projection);
        return projection != nullptr && projection == used;
    }

    void projectionsDidChange() override {
        _journal.push_back(_name + " changed");
        onChange();
    }

    void replaceProjection(const TQProjection* old, TQProjection* replacement) override {
        _journal.push_back(_name + " replaced");
        if (used == old) {
            used = replacement;
        }
        onReplace();
    }

    const TQProjection* used = nullptr;
    std::function<void(const TQProjection*)> onQuestion = [](const TQProjection*) {};
    std::function<void()> onChange = [] {};
    std::function<void()> onReplace = [] {};

  private:
    std::string _name;
    Journal& _journal;
};

/// A projection or an ellipsoid that does something when it dies.
template <class Base>
class Mortal : public Base {
  public:
    template <class... Arguments>
    explicit Mortal(std::function<void()> onDeath, Arguments&&... arguments)
        : Base(std::forward<Arguments>(arguments)...), _onDeath(std::move(onDeath)) {}
    Mortal(const Mortal&) = delete;
    Mortal& operator=(const Mortal&) = delete;
    ~Mortal() override { _onDeath(); }

  private:
    std::function<void()> _onDeath;
};

/// The text of a projection file: a direct Mercator of a name, told apart by its central meridian.
inline std::string mercatorFile(const std::string& name, double meridian = 0.0,
                                const std::string& ellipsoid = "WGS 84") {
    return "TQFile v1\n5\nTQPrMercator v1\nTQProjection v1\n" + name + "\nTQEllipsoid v2\n" + ellipsoid +
           "\n6378137\n0.006694379990141\n0\n" + std::to_string(meridian) + "\n0\n0\n0\n1\n";
}

/// A shared directory and a directory of a user's files for the managers of a test. What panels say is to be
/// asked of TQLocalizer: the texts are their keys, unless an earlier manager of the process has read them.
class ManagerTest {
  public:
    /// The shared directory's folder of projections.
    TQString projections() const { return _shared.file("resProj/Projection"); }

    /// Writes a file into the shared directory's folder of projections.
    TQString resource(const std::string& file, const std::string& text) const {
        return _shared.fileWith("resProj/Projection/" + file, text);
    }

    /// Writes a file elsewhere.
    TQString userFile(const std::string& file, const std::string& text) const {
        return _users.fileWith(file, text);
    }

    const TemporaryDirectory& shared() const { return _shared; }
    const TemporaryDirectory& users() const { return _users; }

  private:
    TemporaryDirectory _shared;
    TemporaryDirectory _users;
    SharedDirectory _sharedDirectory{_shared.directory()};
};

/// The names of the projections of a manager.
inline std::vector<std::string> namesIn(const TQProjMgr& manager) {
    std::vector<std::string> names;
    const auto list = manager.newListOfProjNames();
    for (const TQString* name : list->objectArray()) {
        names.push_back(name->utf8());
    }
    return names;
}

/// No load flags.
inline constexpr std::uint32_t kNoFlags = 0;

/// A manager without resources, and two owners.
struct EmptyManager {
    ManagerTest directories;
    Journal journal;
    TQProjMgr manager{false};
    int one = 0;
    int two = 0;

    JournalUser* observe(const char* name, void* owner, bool replace = false) {
        auto user = std::make_unique<JournalUser>(name, journal, owner);
        JournalUser* const address = user.get();
        manager.registerUser(std::move(user), replace);
        return address;
    }

    TQProjection* load(const std::string& name, double meridian = 0.0, bool isResource = false,
                       std::uint32_t flags = kNoFlags) {
        manager.loadProjection(directories.userFile("loaded.proj", mercatorFile(name, meridian)), isResource,
                               flags);
        return manager.projWithName(TQString(name.c_str()), false);
    }
};
