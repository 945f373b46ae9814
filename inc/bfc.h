//===- inc/bfc.h - Every public header of the library -------------------===//
#ifndef BFC_BFC_H
#define BFC_BFC_H

#include "sys_base.h"
#include "plat_error.h"
#include "sys_string.h"
#include "sys_strutil.h"
#include "sys_strpattern.h"
#include "sys_exception.h"
#include "ssm_report.h"
#include "ssm.h"
#include "sys_test.h"

#endif
