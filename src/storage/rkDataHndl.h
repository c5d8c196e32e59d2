// Handling of stored data: properties as text, and objects in the storage formats.
#pragma once

#include "storage/rkAdvReader.h"
#include "storage/rkDataBody.h"
#include "storage/rkDataHeader.h"
#include "storage/rkDataProps.h"
#include "storage/rkFieldClasses.h"
