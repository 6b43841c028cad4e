/*
** kodbc — common database routines of the application family.
** One header for the whole exported interface.
*/
#ifndef KODBC_H
#define KODBC_H

#include "kodbc_types.h"
#include "kodbc_frame.h"
#include "kodbc_messages.h"
#include "kodbc_connect.h"
#include "kodbc_diag.h"
#include "kodbc_sqltext.h"
#include "kodbc_catalog.h"
#include "kodbc_exec.h"
#include "kodbc_select.h"
#include "kodbc_seldesc.h"
#include "kodbc_selfact.h"
#include "kodbc_views.h"
#include "kodbc_tableops.h"
#include "kodbc_systable.h"
#include "kodbc_wizards.h"
#include "kodbc_tabledesign.h"
#include "kodbc_transfer.h"
#include "kodbc_tools.h"

#endif /* KODBC_H */
