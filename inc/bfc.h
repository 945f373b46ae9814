//===- inc/bfc.h - Every public header of the library -------------------===//
#ifndef BFC_BFC_H
#define BFC_BFC_H

#include "sys_base.h"
#include "plat_error.h"
#include "sys_string.h"
#include "sys_strutil.h"
#include "sys_exception.h"
#include "ssm_report.h"
#include "ssm.h"
#include "sys_test.h"
#include "plat_strings.h"
#include "sfm_tr.h"
#include "sys_stdinterface.h"
#include "sys_geometry.h"
#include "sys_geomnode.h"
#include "sys_convert.h"
#include "sys_geom.h"
#include "sys_point.h"
#include "sys_location.h"
#include "sys_box.h"
#include "sys_arc.h"
#include "sys_transform.h"
#include "sys_textobj.h"
#include "scc_event.h"
#include "scc_list.h"
#include "scc_safelist.h"
#include "scc_compare.h"
#include "scc_map.h"

#endif
