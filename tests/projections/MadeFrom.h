#pragma once

#include "testing/MadeProjection.h"

/// A projection of a class, on its ellipsoid, made by the parameters of its formulas as they are published.
template <class Class, class Formulas>
class MadeFrom {
  public:
    explicit MadeFrom(const Formulas& formulas)
        : _made(Class::typeCode, formulas.size, formulas.parameters()) {}

    Class& operator*() const { return dynamic_cast<Class&>(*_made); }
    Class* operator->() const { return &**this; }

  private:
    MadeProjection _made;
};
