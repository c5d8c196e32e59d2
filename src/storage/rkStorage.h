// Storage of objects: the saver, its reader and writers, and the keyed collections.
#pragma once

#include "storage/rkFilteringWriter.h"
#include "storage/rkFitReader.h"
#include "storage/rkFitWriter.h"
#include "storage/rkKeyedCollections.h"
#include "storage/rkObjectSaver.h"
