#include "projection/TQDummyProjection.h"

TQDummyProjection::~TQDummyProjection() = default;
