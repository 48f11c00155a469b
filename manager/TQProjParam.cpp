#include "manager/TQProjParam.h"

TQProjParam::TQProjParam(const TQProjParam& other)
    : TQData(other), _label(other._label ? std::make_unique<TQString>(*other._label) : nullptr),
      _choices(other._choices ? std::make_unique<TQNuplet>(*other._choices) : nullptr) {}

TQProjParam::~TQProjParam() = default;
