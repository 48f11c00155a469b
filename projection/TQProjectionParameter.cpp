#include "projection/TQProjectionParameter.h"

#include "projection/TQProjection.h"
#include "support/TQFile.h"
#include "support/TQReadStream.h"
#include "support/TQWriteStream.h"

#include <cmath>

void TQProjectionParameters::list(const TQProjection& projection, HashTbl<TQProjParam>& table) const {
    for (const TQProjectionParameter& parameter : _list) {
        const TQString name(parameter.name);
        table.add(
            std::make_unique<TQProjParam>(name, projection.*parameter.value, TQString(parameter.unitLabel)),
            name);
    }
}

void TQProjectionParameters::take(TQProjection& projection, const HashTbl<TQProjParam>& table) const {
    for (const TQProjectionParameter& parameter : _list) {
        if (const TQProjParam* given = table.lookup(parameter.name)) {
            projection.*parameter.value = given->doubleValue();
        }
    }
}

bool TQProjectionParameters::areSame(const TQProjection& one, const TQProjection& other) const {
    for (const TQProjectionParameter& parameter : _list) {
        if (!(std::abs(one.*parameter.value - other.*parameter.value) <= parameter.tolerance)) {
            return false;
        }
    }
    return true;
}

int TQProjectionParameters::loadFrom(TQFile& file, TQProjection& projection) const {
    for (const TQProjectionParameter& parameter : _list) {
        TQString line;
        if (file.readLine(line) != 0) {
            return parameter.missingLine;
        }
        projection.*parameter.value = line.convertToDouble();
    }
    return 0;
}

bool TQProjectionParameters::writeTo(TQFile& file, const TQProjection& projection) const {
    for (const TQProjectionParameter& parameter : _list) {
        if (file.writeLine(tq_format(parameter.textFormat, projection.*parameter.value).c_str()) != 0) {
            return false;
        }
    }
    return true;
}

void TQProjectionParameters::archiveTo(TQWriteStream* stream, const TQProjection& projection) const {
    for (const TQProjectionParameter& parameter : _list) {
        stream->write(projection.*parameter.value);
    }
}

void TQProjectionParameters::unarchiveFrom(TQReadStream* stream, TQProjection& projection) const {
    for (const TQProjectionParameter& parameter : _list) {
        stream->read(projection.*parameter.value);
    }
}
