#include "support/TQData.h"

#include "support/TQArchiveBlock.h"
#include "support/TQNumberText.h"
#include "support/TQReadStream.h"
#include "support/TQWriteStream.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <optional>
#include <string>
#include <string_view>

namespace {

constexpr std::int16_t newestVersion = 0;

template <class... F>
struct Overloaded : F... {
    using F::operator()...;
};
template <class... F>
Overloaded(F...) -> Overloaded<F...>;

int toInt(double value) {
    using Limits = std::numeric_limits<int>;
    if (std::isnan(value)) {
        return 0;
    }
    return static_cast<int>(std::clamp<double>(value, Limits::min(), Limits::max()));
}

std::optional<Logical> logicalFromText(const TQString& text) {
    const auto words = text.newStringArrayFromTokens(TQString(" \t\n\v\f\r"));
    const TQString word = words->count() == 1 ? *words->objectAt(0) : TQString();
    if (word == "true" || word == "1") {
        return Logical(true);
    }
    if (word == "false" || word == "0") {
        return Logical(false);
    }
    return std::nullopt;
}

const TQString* textOf(const TQSharedStringUse& use) {
    return use.string() != nullptr ? &use.string()->string() : nullptr;
}

} // namespace

TQData::TQData(const TQString& name, Logical value) : _name(name), _value(value) {}

TQData::TQData(const TQString& name, int value) : _name(name), _value(value) {}

TQData::TQData(const TQString& name, double value) : _name(name), _value(value) {}

TQData::TQData(const TQString& name, const TQString& value) : _name(name), _value(value) {}

TQData::TQData(const TQString& name, TQSharedString* value) : _name(name), _value(TQSharedStringUse(value)) {}

Logical TQData::logicalValue() const {
    if (const TQString* const text = stringValue()) {
        return text->isEqual("true") || text->convertToDouble() != 0;
    }
    return doubleValue() != 0;
}

int TQData::intValue() const {
    if (const TQString* const text = stringValue()) {
        return text->convertToLong();
    }
    return toInt(doubleValue());
}

double TQData::doubleValue() const {
    if (const TQString* const text = stringValue()) {
        return text->convertToDouble();
    }
    return std::visit(Overloaded{[](Logical value) { return value ? 1.0 : 0.0; },
                                 [](std::int32_t value) { return static_cast<double>(value); },
                                 [](double value) { return value; }, [](const auto&) { return 0.0; }},
                      _value);
}

const TQString* TQData::stringValue() const {
    if (const auto* const use = std::get_if<TQSharedStringUse>(&_value)) {
        return textOf(*use);
    }
    return std::get_if<TQString>(&_value);
}

TQSharedString* TQData::sharedStringValue() const {
    const auto* const use = std::get_if<TQSharedStringUse>(&_value);
    return use != nullptr ? use->string() : nullptr;
}

void TQData::appendTypeRepresentation(TQString& text) const {
    constexpr std::array<const char*, std::variant_size_v<Value>> names = {"Logical", "Int", "Double",
                                                                           "String", "SharedString"};
    text.append(names[_value.index()]);
}

std::unique_ptr<TQString> TQData::newTypeRepresentation() const {
    auto text = std::make_unique<TQString>();
    appendTypeRepresentation(*text);
    return text;
}

void TQData::appendValueRepresentation(TQString& text) const {
    if (const TQString* const string = stringValue()) {
        text.append(*string);
        return;
    }
    const std::string number =
        std::visit(Overloaded{[](Logical value) { return std::string(value ? "true" : "false"); },
                              [](std::int32_t value) { return std::to_string(value); },
                              [](double value) { return tq_shortestText(value); },
                              [](const auto&) { return std::string(); }},
                   _value);
    text.append(number.c_str());
}

std::unique_ptr<TQString> TQData::newValueRepresentation() const {
    auto text = std::make_unique<TQString>();
    appendValueRepresentation(*text);
    return text;
}

bool TQData::takeValueFromRepresentation(const TQString& text) {
    return std::visit(
        Overloaded{[&text](Logical& value) {
                       const std::optional<Logical> read = logicalFromText(text);
                       value = read.value_or(value);
                       return read.has_value();
                   },
                   [&text](std::int32_t& value) { return tq_parseCompleteLong(text.charBuffer(), value); },
                   [&text](double& value) { return tq_parseCompleteDouble(text.charBuffer(), value); },
                   [&text](TQString& value) {
                       value = text;
                       return true;
                   },
                   [&text](TQSharedStringUse& value) {
                       value = TQSharedStringUse(text);
                       return true;
                   }},
        _value);
}

void TQData::setValueFrom(const TQData& other) { _value = other._value; }

bool TQData::isEqual(const TQObject* other) const {
    const auto* const data = dynamic_cast<const TQData*>(other);
    return data != nullptr && data->isMemberOf(className()) != 0 && _name == data->_name &&
           _value == data->_value;
}

void TQData::archiveTo(TQWriteStream* stream) const {
    stream->declareVersion("TQData", newestVersion);
    TQObject::archiveTo(stream);
    _name.archiveTo(stream);
    stream->write(static_cast<std::int32_t>(type()));
    std::visit(Overloaded{[stream](Logical value) { stream->write(static_cast<bool>(value)); },
                          [stream](const TQString& value) { value.archiveTo(stream); },
                          [stream](const TQSharedStringUse& use) { TQString::archive(textOf(use), stream); },
                          [stream](auto number) { stream->write(number); }},
               _value);
}

void TQData::unarchiveFrom(TQReadStream* stream) {
    if (tq_readKnownVersion(stream, "TQData", newestVersion) < 0) {
        return;
    }
    TQObject::unarchiveFrom(stream);
    TQString name;
    name.resetFrom(stream);
    std::int32_t type = 0;
    stream->read(type);
    Value value = unarchiveValue(type, stream);
    if (!stream->failed()) {
        _name = std::move(name);
        _value = std::move(value);
    }
}

TQData::Value TQData::unarchiveValue(std::int32_t type, TQReadStream* stream) {
    const auto read = [stream](auto number) {
        stream->read(number);
        return number;
    };
    switch (type) {
    case TQDataLogical:
        return Logical(read(false));
    case TQDataInt:
        return read(std::int32_t{0});
    case TQDataDouble:
        return read(0.0);
    case TQDataString: {
        TQString text;
        text.resetFrom(stream);
        return text;
    }
    case TQDataSharedString: {
        const std::unique_ptr<TQString> text = TQString::unarchiveFrom(stream);
        return text != nullptr ? TQSharedStringUse(*text) : TQSharedStringUse();
    }
    default:
        stream->fail();
        return Logical(false);
    }
}
