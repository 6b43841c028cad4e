// The condition and assignment grids of the record wizards' pages, in the
// form the dialog-row transfer (Kodbc_OpDesc_To_DialogItems,
// Kodbc_DialogItems_To_OpDesc) reads: rows of field, operation and value
// controls, one group, its separator row, the end row.
#pragma once

#include "wizards/record_wizard_ids.h"

#include <kodbc/kodbc_seldesc.h>

namespace kodbc::wizards {

// Five condition rows; the descriptor kind is OPDESC_SELECTION.
inline constexpr OpDescDialogItem kConditionGrid[] = {
    {IDC_RECWIZ_ROW1_FIELD, IDC_RECWIZ_ROW1_OPERATION, IDC_RECWIZ_ROW1_VALUE},
    {IDC_RECWIZ_ROW2_FIELD, IDC_RECWIZ_ROW2_OPERATION, IDC_RECWIZ_ROW2_VALUE},
    {IDC_RECWIZ_ROW3_FIELD, IDC_RECWIZ_ROW3_OPERATION, IDC_RECWIZ_ROW3_VALUE},
    {IDC_RECWIZ_ROW4_FIELD, IDC_RECWIZ_ROW4_OPERATION, IDC_RECWIZ_ROW4_VALUE},
    {IDC_RECWIZ_ROW5_FIELD, IDC_RECWIZ_ROW5_OPERATION, IDC_RECWIZ_ROW5_VALUE},
    {OPDESC_ITEM_GROUP_END, OPDESC_ITEM_GROUP_END, OPDESC_ITEM_GROUP_END},
    {OPDESC_ITEM_TABLE_END, OPDESC_ITEM_TABLE_END, OPDESC_ITEM_TABLE_END},
};

// Three assignment rows; the descriptor kind is OPDESC_ASSIGNMENT.
inline constexpr OpDescDialogItem kAssignmentGrid[] = {
    {IDC_RECWIZ_ROW1_FIELD, IDC_RECWIZ_ROW1_OPERATION, IDC_RECWIZ_ROW1_VALUE},
    {IDC_RECWIZ_ROW2_FIELD, IDC_RECWIZ_ROW2_OPERATION, IDC_RECWIZ_ROW2_VALUE},
    {IDC_RECWIZ_ROW3_FIELD, IDC_RECWIZ_ROW3_OPERATION, IDC_RECWIZ_ROW3_VALUE},
    {OPDESC_ITEM_GROUP_END, OPDESC_ITEM_GROUP_END, OPDESC_ITEM_GROUP_END},
    {OPDESC_ITEM_TABLE_END, OPDESC_ITEM_TABLE_END, OPDESC_ITEM_TABLE_END},
};

} // namespace kodbc::wizards
