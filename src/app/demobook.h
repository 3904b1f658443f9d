#pragma once

#include "model/records.h"

#include <QDate>

// A Book of made-up but realistic data for pictures of the screens: a musician who
// also builds web sites, with four accounts, about two hundred lines over the six
// months up to `today`, six bills (one overdue) and four royalties. The same
// `today` always gives the same Book.
Book demoBook(QDate today);
