// Dialog 10065, the selection editor: a caller's selection descriptor in
// four groups of condition rows, and the mask files a user keeps them in.
// The rows' contents move through the same two descriptor functions as on
// every other selection page, so a mask saved here loads anywhere.
#include "select/seldesc_editor_ids.h"
#include "select/seldesc_rows.h"
#include "select/selection_mask.h"

#include "internal/dialog_kit_win.h"
#include "internal/library.h"

#include <kodbc/kodbc_seldesc.h>
#include <korvel/korvel32.h>

#include <new>
#include <string>

using namespace kodbc;

namespace {

const OpDescDialogItem kRows[] = {
    {IDC_SELEDIT_G1R1_FIELD, IDC_SELEDIT_G1R1_OPERATION, IDC_SELEDIT_G1R1_VALUE},
    {IDC_SELEDIT_G1R2_FIELD, IDC_SELEDIT_G1R2_OPERATION, IDC_SELEDIT_G1R2_VALUE},
    {IDC_SELEDIT_G1R3_FIELD, IDC_SELEDIT_G1R3_OPERATION, IDC_SELEDIT_G1R3_VALUE},
    {IDC_SELEDIT_G1R4_FIELD, IDC_SELEDIT_G1R4_OPERATION, IDC_SELEDIT_G1R4_VALUE},
    {IDC_SELEDIT_G1R5_FIELD, IDC_SELEDIT_G1R5_OPERATION, IDC_SELEDIT_G1R5_VALUE},
    {OPDESC_ITEM_GROUP_END, OPDESC_ITEM_GROUP_END, OPDESC_ITEM_GROUP_END},
    {IDC_SELEDIT_G2_FIELD, IDC_SELEDIT_G2_OPERATION, IDC_SELEDIT_G2_VALUE},
    {OPDESC_ITEM_GROUP_END, OPDESC_ITEM_GROUP_END, OPDESC_ITEM_GROUP_END},
    {IDC_SELEDIT_G3_FIELD, IDC_SELEDIT_G3_OPERATION, IDC_SELEDIT_G3_VALUE},
    {OPDESC_ITEM_GROUP_END, OPDESC_ITEM_GROUP_END, OPDESC_ITEM_GROUP_END},
    {IDC_SELEDIT_G4_FIELD, IDC_SELEDIT_G4_OPERATION, IDC_SELEDIT_G4_VALUE},
    {OPDESC_ITEM_GROUP_END, OPDESC_ITEM_GROUP_END, OPDESC_ITEM_GROUP_END},
    {OPDESC_ITEM_TABLE_END, OPDESC_ITEM_TABLE_END, OPDESC_ITEM_TABLE_END},
};

constexpr int kHelpContext = 10019;
constexpr char kSettingsSection[] = "Settings";
constexpr char kRememberedMask[] = "SelectMaskFile";

// Kodbc_Edit_SelDesc's arguments, for the length of the call.
struct EditorState {
    char *selDesc;
    int selDescSize;
    const char *fieldList;
    int reserved2;
};

// The first control without text gets the focus. False when every control
// has text.
bool FocusFirstEmpty(HWND dialog) {
    const int id = seldesc::FirstEmptyControl(kRows, [&](int candidate) {
        HWND control = GetDlgItem(dialog, candidate);
        return !control || GetWindowTextLengthA(control) > 0;
    });
    if (id == 0) return false;
    SendMessageA(dialog, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(GetDlgItem(dialog, id)), TRUE);
    return true;
}

// The file it starts at is the last mask loaded or saved. False when the
// user cancelled.
bool AskForMaskFile(int mode, int titleId, std::string &fileName) {
    return AskForRememberedFile(mode, titleId, msg::FILTER_SELECTION_MASKS, kSettingsSection, kRememberedMask,
                                fileName);
}

// A mask's conditions over the rows; rows the file has no line for keep
// what they show.
void LoadMask(HWND dialog, const EditorState &state) {
    std::string fileName;
    if (!AskForMaskFile(KORVEL_FILE_OPEN, msg::TITLE_LOAD_SELECTION, fileName)) return;
    std::string descriptor;
    try {
        if (!select::ReadSelectionMask(fileName.c_str(), descriptor)) return;
    } catch (const std::bad_alloc &) {
        LibraryMessage(msg::OUT_OF_MEMORY);
        return;
    }
    Kodbc_OpDesc_To_DialogItems(OPDESC_SELECTION, descriptor.c_str(), state.fieldList, dialog, kRows,
                                state.reserved2);
}

// The rows are taken before the file is asked for: what is saved is what
// the user saw when choosing to save.
void SaveMask(HWND dialog) {
    char buffer[select::kSelectionMaskBufferSize] = {};
    char *descriptor = buffer + select::kSelectionMaskMagicSize;
    Kodbc_DialogItems_To_OpDesc(OPDESC_SELECTION, dialog, kRows, descriptor,
                                select::kSelectionMaskBufferSize - select::kSelectionMaskMagicSize);
    std::string fileName;
    if (!AskForMaskFile(KORVEL_FILE_SAVE, msg::TITLE_SAVE_SELECTION, fileName)) return;
    select::WriteSelectionMask(fileName.c_str(), descriptor);
}

bool Command(HWND dialog, const EditorState *state, int id) {
    switch (id) {
    case IDC_SELEDIT_OK:
        if (!state) {
            EndDialog(dialog, 2);
            return true;
        }
        Kodbc_DialogItems_To_OpDesc(OPDESC_SELECTION, dialog, kRows, state->selDesc, state->selDescSize);
        EndDialog(dialog, 1);
        return true;
    case IDC_SELEDIT_CANCEL:
        EndDialog(dialog, 2);
        return true;
    case IDC_SELEDIT_HELP:
        Korvel_PerformHelp(dialog, LibraryInstance(), kHelpContext);
        return true;
    case IDC_SELEDIT_LOAD:
        if (state) LoadMask(dialog, *state);
        return true;
    case IDC_SELEDIT_SAVE:
        if (state) SaveMask(dialog);
        return true;
    default:
        return false;
    }
}

} // namespace

extern "C" {

KODBC_API INT_PTR KODBC_CALL EditSelDesc_Dialog_Callback(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    try {
        const auto *state = ExportedDialogObject<const EditorState>(dialog, message, lParam);
        if (message == WM_INITDIALOG) {
            if (state)
                Kodbc_OpDesc_To_DialogItems(OPDESC_SELECTION, state->selDesc, state->fieldList, dialog, kRows,
                                            state->reserved2);
            return FocusFirstEmpty(dialog) ? FALSE : TRUE;
        }
        if (message != WM_COMMAND) return FALSE;
        const int notification = HIWORD(wParam);
        if (notification != BN_CLICKED) return FALSE;
        return Command(dialog, state, LOWORD(wParam)) ? TRUE : FALSE;
    } catch (...) {
        return EndDialogAfterFailure(dialog);
    }
}

KODBC_API int KODBC_CALL Kodbc_Edit_SelDesc(char *selDesc, int selDescSize, const char *fieldList, int reserved1,
                                            int reserved2) {
    (void)reserved1;
    if (!selDesc || selDescSize < 10) return 2;
    try {
        EditorState state{selDesc, selDescSize, fieldList, reserved2};
        return LibraryDialogBox(&EditSelDesc_Dialog_Callback, IDD_SELDESC_EDITOR, Korvel_ActiveWindow(),
                                reinterpret_cast<LPARAM>(&state)) == 1
                   ? 1
                   : 2;
    } catch (...) {
        LibraryMessage(msg::OUT_OF_MEMORY);
        return 2;
    }
}

} // extern "C"
