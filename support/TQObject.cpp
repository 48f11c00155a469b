#include "support/TQObject.h"

#include "support/TQIdentity.h"

const char* TQObject::className() const { return "TQObject"; }

int TQObject::isKindOf(const char* name) const { return tq_isClassName(name, "TQObject"); }

int TQObject::isKindOfClass(const char* name) const { return isKindOf(name); }

int TQObject::isMemberOf(const char* name) const { return tq_isClassName(name, className()); }

int TQObject::isMemberOfClass(const char* name) const { return isMemberOf(name); }

TQObject::~TQObject() = default;

void TQObject::awake() {}

bool TQObject::isEqual(const TQObject* other) const { return this == other; }

bool TQObject::operator==(const TQObject& other) const { return isEqual(&other); }

void TQObject::archiveTo(TQWriteStream* /*stream*/) const {}

void TQObject::unarchiveFrom(TQReadStream* /*stream*/) {}
