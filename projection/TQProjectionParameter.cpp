#include "projection/TQProjectionParameter.h"

#include "projection/TQProjection.h"
#include "support/TQFile.h"
#include "support/TQReadStream.h"
#include "support/TQWriteStream.h"

#include <cmath>

namespace {

using Parameter = TQProjectionParameter;

constexpr std::uint32_t optionBits = 0xFFFF;

int options(std::uint32_t value) { return static_cast<int>(value & optionBits); }

// ---- one value, by its kind ------------------------------------------------------------------------------

template <class Value>
void addTo(HashTbl<TQProjParam>& table, const Parameter& parameter, const Value& value) {
    const TQString name(parameter.name);
    table.add(std::make_unique<TQProjParam>(name, value, TQString(parameter.unitLabel)), name);
}

void list(HashTbl<TQProjParam>& table, const Parameter& parameter, double value) {
    addTo(table, parameter, value);
}

void list(HashTbl<TQProjParam>& table, const Parameter& parameter, bool value) {
    addTo(table, parameter, Logical(value));
}

void list(HashTbl<TQProjParam>& /*table*/, const Parameter& /*parameter*/, std::uint32_t /*value*/) {}

void take(const HashTbl<TQProjParam>& table, const Parameter& parameter, double& value) {
    if (const TQProjParam* given = table.lookup(parameter.name)) {
        value = given->doubleValue();
    }
}

void take(const HashTbl<TQProjParam>& table, const Parameter& parameter, bool& value) {
    if (const TQProjParam* given = table.lookup(parameter.name)) {
        value = parameter.isKeptAsInteger ? given->intValue() == 1 : bool{given->logicalValue()};
    }
}

void take(const HashTbl<TQProjParam>& /*table*/, const Parameter& /*parameter*/, std::uint32_t& /*value*/) {}

bool isSame(const Parameter& parameter, double one, double other) {
    return std::abs(one - other) <= parameter.tolerance;
}

bool isSame(const Parameter& /*parameter*/, bool one, bool other) { return one == other; }

bool isSame(const Parameter& /*parameter*/, std::uint32_t one, std::uint32_t other) {
    return options(one) == options(other);
}

void takeLine(const TQString& line, double& value) { value = line.convertToDouble(); }

void takeLine(const TQString& line, bool& value) { value = line.convertToLong() != 0; }

void takeLine(const TQString& line, std::uint32_t& value) {
    value = static_cast<std::uint32_t>(line.convertToLong()) & optionBits;
}

std::string lineOf(const TQFile& file, const Parameter& parameter, double value) {
    return file.numberText(value, parameter.textFormat);
}

std::string lineOf(const TQFile& /*file*/, const Parameter& parameter, bool value) {
    return tq_format(parameter.textFormat, value ? 1 : 0);
}

std::string lineOf(const TQFile& /*file*/, const Parameter& parameter, std::uint32_t value) {
    return tq_format(parameter.textFormat, options(value));
}

void archive(TQWriteStream* stream, const Parameter& /*parameter*/, double value) { stream->write(value); }

void archive(TQWriteStream* stream, const Parameter& parameter, bool value) {
    if (parameter.isKeptAsInteger) {
        stream->write(std::int32_t{value});
    } else {
        stream->write(value);
    }
}

void archive(TQWriteStream* stream, const Parameter& /*parameter*/, std::uint32_t value) {
    stream->write(std::int32_t{options(value)});
}

void unarchive(TQReadStream* stream, const Parameter& /*parameter*/, double& value) { stream->read(value); }

void unarchive(TQReadStream* stream, const Parameter& parameter, bool& value) {
    if (parameter.isKeptAsInteger) {
        std::int32_t integer = 0;
        stream->read(integer);
        value = integer != 0;
    } else {
        stream->read(value);
    }
}

void unarchive(TQReadStream* stream, const Parameter& /*parameter*/, std::uint32_t& value) {
    std::int32_t integer = 0;
    stream->read(integer);
    value = static_cast<std::uint32_t>(integer) & optionBits;
}

// ---- one parameter ---------------------------------------------------------------------------------------

bool isMeant(const Parameter& parameter, const TQProjection& projection) {
    return parameter.condition == nullptr || projection.*parameter.condition == parameter.conditionValue;
}

bool isKept(const Parameter& parameter, const TQProjection& projection, int version) {
    return version >= parameter.sinceVersion && isMeant(parameter, projection);
}

} // namespace

void TQProjectionParameters::list(const TQProjection& projection, HashTbl<TQProjParam>& table) const {
    for (const Parameter& parameter : _list) {
        if (isMeant(parameter, projection)) {
            std::visit([&](auto member) { ::list(table, parameter, projection.*member); }, parameter.member);
        }
    }
}

void TQProjectionParameters::take(TQProjection& projection, const HashTbl<TQProjParam>& table) const {
    for (const Parameter& parameter : _list) {
        if (isMeant(parameter, projection)) {
            std::visit([&](auto member) { ::take(table, parameter, projection.*member); }, parameter.member);
        }
    }
}

bool TQProjectionParameters::areSame(const TQProjection& one, const TQProjection& other) const {
    for (const Parameter& parameter : _list) {
        const auto same = [&](auto member) { return isSame(parameter, one.*member, other.*member); };
        if (isMeant(parameter, one) && !std::visit(same, parameter.member)) {
            return false;
        }
    }
    return true;
}

void TQProjectionParameters::copy(const TQProjection& source, TQProjection& destination) const {
    for (const Parameter& parameter : _list) {
        if (isMeant(parameter, source)) {
            std::visit([&](auto member) { destination.*member = source.*member; }, parameter.member);
        }
    }
}

int TQProjectionParameters::loadFrom(TQFile& file, TQProjection& projection, int version) const {
    for (const Parameter& parameter : _list) {
        if (!isKept(parameter, projection, version)) {
            continue;
        }
        TQString line;
        if (file.readNumberLine(line) != 0) {
            const std::string name = *parameter.name != 0 ? parameter.name : "the options";
            return file.failReading(parameter.missingLine, "the line of " + name + " is missing");
        }
        std::visit([&](auto member) { takeLine(line, projection.*member); }, parameter.member);
    }
    return 0;
}

bool TQProjectionParameters::writeTo(TQFile& file, const TQProjection& projection) const {
    for (const Parameter& parameter : _list) {
        const auto line = [&](auto member) { return lineOf(file, parameter, projection.*member); };
        if (isMeant(parameter, projection) &&
            file.writeLine(std::visit(line, parameter.member).c_str()) != 0) {
            return false;
        }
    }
    return true;
}

void TQProjectionParameters::archiveTo(TQWriteStream* stream, const TQProjection& projection) const {
    for (const Parameter& parameter : _list) {
        if (isMeant(parameter, projection)) {
            std::visit([&](auto member) { archive(stream, parameter, projection.*member); },
                       parameter.member);
        }
    }
}

void TQProjectionParameters::unarchiveFrom(TQReadStream* stream, TQProjection& projection,
                                           int version) const {
    for (const Parameter& parameter : _list) {
        if (isKept(parameter, projection, version)) {
            std::visit([&](auto member) { unarchive(stream, parameter, projection.*member); },
                       parameter.member);
        }
    }
}
