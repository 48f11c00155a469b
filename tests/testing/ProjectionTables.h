#pragma once

#include "projection/TQProjection.h"

#include <gtest/gtest.h>

#include <iomanip>
#include <locale>
#include <memory>
#include <optional>
#include <ostream>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

/// The six bytes of the unit label of angles.
inline const std::string kDegreesLabel = "degr\xDDs";

/// A parameter as a table holds it: kind and value as text, doubles with 15 digits; the label by its bytes.
struct ListedParameter {
    std::string name;
    std::string type;
    std::string value;
    std::optional<std::string> label = std::nullopt; ///< none for a null one

    bool operator==(const ListedParameter&) const = default;
};

/// The value of a parameter as ListedParameter has it.
inline std::string listedValue(const TQProjParam& parameter) {
    if (parameter.type() != TQDataDouble) {
        return parameter.newValueRepresentation()->utf8();
    }
    std::ostringstream text;
    text.imbue(std::locale::classic());
    text << std::setprecision(15) << parameter.doubleValue();
    return text.str();
}

inline std::ostream& operator<<(std::ostream& out, const ListedParameter& parameter) {
    return out << parameter.name << ": " << parameter.type << " " << parameter.value << " ["
               << parameter.label.value_or("null") << "]";
}

/// The parameters of a projection in the order in which it adds them to a table.
inline std::vector<ListedParameter> listedParameters(const TQProjection& projection) {
    HashTbl<TQProjParam> table(1); // one bucket keeps the order
    projection.getParams(table);
    std::vector<ListedParameter> list;
    HashState<TQProjParam> state;
    while (const TQProjParam* parameter = table.next(state)) {
        EXPECT_EQ(table.lookup(parameter->name()), parameter);
        const TQString* label = parameter->unitLabel();
        list.push_back({parameter->name()->utf8(), parameter->newTypeRepresentation()->utf8(),
                        listedValue(*parameter),
                        label != nullptr ? std::optional<std::string>(label->charBuffer()) : std::nullopt});
    }
    return list;
}

/// A table of parameters that is built entry by entry.
class ParameterTable {
  public:
    ParameterTable() : _table(1) {}

    template <class Value>
    ParameterTable& with(const char* name, const Value& value) {
        _table.add(std::make_unique<TQProjParam>(TQString(name), value, TQString()), TQString(name));
        return *this;
    }

    /// Adds a parameter of a kind by the representation of its value.
    ParameterTable& with(const std::string& name, const std::string& type, const std::string& value) {
        auto parameter = emptyOfType(TQString(name.c_str()), type);
        EXPECT_TRUE(parameter->takeValueFromRepresentation(TQString(value.c_str()))) << name << " " << value;
        _table.add(std::move(parameter), TQString(name.c_str()));
        return *this;
    }

    const HashTbl<TQProjParam>& table() const { return _table; }

    /// The table as a manager takes it.
    HashTbl<TQProjParam>* get() { return &_table; }

  private:
    static std::unique_ptr<TQProjParam> emptyOfType(const TQString& name, const std::string& type) {
        if (type == "Logical") {
            return std::make_unique<TQProjParam>(name, Logical(false), TQString());
        }
        if (type == "Int") {
            return std::make_unique<TQProjParam>(name, 0, TQString());
        }
        if (type == "Double") {
            return std::make_unique<TQProjParam>(name, 0.0, TQString());
        }
        return std::make_unique<TQProjParam>(name, TQString(), TQString());
    }

    HashTbl<TQProjParam> _table;
};
