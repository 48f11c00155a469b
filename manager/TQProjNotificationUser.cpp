#include "manager/TQProjNotificationUser.h"

TQProjNotificationUser::~TQProjNotificationUser() = default;
