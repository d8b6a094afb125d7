#include "CDataServiceAbsolute.h"

CDataServiceAbsolute::~CDataServiceAbsolute() = default;
