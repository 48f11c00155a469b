#include "ellipsoid/TQEllMgr.h"

#include "ellipsoid/TQDatumFile.h"
#include "support/TQDirectory.h"
#include "support/TQFile.h"
#include "support/TQMessages.h"
#include "support/TQReadStream.h"
#include "support/TQWriteStream.h"

#include <cstdint>
#include <string>
#include <utility>

TQEllMgr::TQEllMgr() = default;

TQEllMgr::~TQEllMgr() = default;

TQEllMgr::TQEllMgr(const TQEllMgr& other) : TQObject(other) {
    HashState<TQEllipsoid> state;
    while (const TQEllipsoid* ellipsoid = other._ellipsoids.next(state)) {
        addEllipsoid(tq_copyOf(*ellipsoid));
    }
}

TQEllipsoid* TQEllMgr::addEllipsoid(std::unique_ptr<TQEllipsoid> ellipsoid) {
    if (ellipsoid == nullptr) {
        return nullptr;
    }
    const TQString* name = ellipsoid->name();
    if (std::unique_ptr<TQEllipsoid> replaced = _ellipsoids.remove(name)) {
        _replaced.push_back(std::move(replaced));
    }
    return _ellipsoids.add(std::move(ellipsoid), name);
}

void TQEllMgr::loadEllipsoidDirectories(const TQString& ellipsoidDirectory, const TQString& datumDirectory) {
    const TQOpenDir ellipsoidFiles(ellipsoidDirectory, TQString("ell"));
    if (!ellipsoidFiles.isListed()) {
        return;
    }
    for (const TQString& name : ellipsoidFiles) {
        loadEllipsoidFile(tq_createPath(ellipsoidDirectory, name));
    }
    for (const TQString& name : TQOpenDir(datumDirectory, TQString("dtm"))) {
        TQFile file(tq_createPath(datumDirectory, name));
        std::unique_ptr<TQEllipsoid> shifted;
        std::string unreported;
        TQDatumFile::read(file, *this, shifted, unreported);
        addEllipsoid(std::move(shifted));
    }
}

void TQEllMgr::loadEllipsoidFile(const TQString& path) {
    TQFile file(path);
    auto ellipsoid = std::make_unique<TQEllipsoid>();
    if (const int code = ellipsoid->loadFromFile(file)) {
        tq_perrorf("Error Nr %d while reading ellipsoid file: %s\n", code, path);
    } else {
        addEllipsoid(std::move(ellipsoid));
    }
}

void TQEllMgr::archiveTo(TQWriteStream* stream) const {
    stream->declareVersion(ownName, 0);
    stream->write(static_cast<std::int32_t>(_ellipsoids.count()));
    HashState<TQEllipsoid> state;
    while (const TQEllipsoid* ellipsoid = _ellipsoids.next(state)) {
        ellipsoid->archiveTo(stream);
    }
}

void TQEllMgr::archiveTo(TQWriteStream* stream, bool /*usedOnly*/) const { archiveTo(stream); }

void TQEllMgr::unarchiveFrom(TQReadStream* stream) {
    constexpr bool inDocument = true;
    unarchiveFrom(stream, inDocument);
}

int TQEllMgr::unarchiveFrom(TQReadStream* stream, bool /*inDocument*/) {
    const int version = stream->version(ownName);
    if (version != 0) {
        tq_perrorf("TQEllMgr::unarchiveFrom(TQReadStream *stream): version %d is unknown.\n", version);
        return NotRead;
    }
    std::int32_t count = 0;
    stream->read(count);
    for (; count > 0 && !stream->failed(); --count) {
        auto ellipsoid = std::make_unique<TQEllipsoid>(stream);
        if (stream->hasUnknownBlock()) {
            stream->fail(); // nobody knows where the next one begins
        }
        if (!stream->failed()) {
            merge(std::move(ellipsoid));
        }
    }
    return stream->failed() ? NotRead : AllRead;
}

TQEllMgr::Changed TQEllMgr::takeChanged() { return std::exchange(_changed, {}); }

void TQEllMgr::merge(std::unique_ptr<TQEllipsoid> ellipsoid) {
    TQEllipsoid* registered = ellipsoidWithName(ellipsoid->name());
    if (registered == nullptr) {
        addEllipsoid(std::move(ellipsoid));
    } else if (!registered->isEqual(ellipsoid.get())) {
        registered->setAxes(ellipsoid->semiMajorAxis(), ellipsoid->eccentricitySquared());
        _changed.insert(registered);
    }
}
