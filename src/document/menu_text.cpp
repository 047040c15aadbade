// The whole vocabulary of the top menu: sections ("#TITLE") and entries
// "caption|tooltip|macOS shortcut|shortcut". The tooltips were written as
// notes and are shown word for word.

#include "document/global.h"

namespace Vantora_TesserinePro {

const string& gettopMenuString() {
    static const string text =
        "\n"
        "#File\n"
        "New|Reset workspace to default|COMMAND+N|CONTROL+N\n"
        "Open Project...|Load existing project.|COMMAND+O|CONTROL+O\n"
        // Ours, without a shortcut: CONTROL+SHIFT+O is taken by Outline.
        "Open Recent|Open one of the last projects opened or saved.|\n"
        "Save Project...|Save current project.|COMMAND+S|CONTROL+S\n"
        "Export PNG...|Export current layout to png image.|ALT+S|ALT+S\n"
        "Export PSD...|Export current layout to photoshop.|CONTROL+S|"
        "CONTROL+ALT+S\n"
        "Export Resolume Arena...|Export current layout to Resolume Arena|"
        "CONTROL+ALT+R|CONTROL+ALT+R\n"
        "Export Report...|Export a PDF show report for the crew.||\n"
        "Export Bill of Materials...|Export what goes on the truck, as a CSV table.||\n"
        "#Edit\n"
        "Undo|Undo the last change|COMMAND+Z|CONTROL+Z\n"
        "Redo|Redo the change undone last|SHIFT+COMMAND+Z|CONTROL+SHIFT+Z\n"
        "#Layers\n"
        "Add Screen Layer|Add Screen Layer |COMMAND++|CONTROL++\n"
        "Add Image Layer|Add Image Layer |COMMAND+I|CONTROL+I\n"
        "Set Logo Layer|Set Logo Layer |\n"
        "Clone Current Layer|Clone Current Layer |COMMAND+D|CONTROL+D\n"
        "Delete Current Layer|DELETE SELECTED LAYER WITH WARNING POPUP TO "
        "MAKE SURE TO DELTE |COMMAND+-|CONTROL+-\n"
        // Ours: the selected screens (Alt+click, Ctrl+A) lined up, spaced
        // out or packed. No shortcuts: every free key is a risk of a clash.
        "#Arrange\n"
        "Align Left|Line up the left edges of the selected screens.||\n"
        "Align Right|Line up the right edges of the selected screens.||\n"
        "Align Top|Line up the top edges of the selected screens.||\n"
        "Align Bottom|Line up the bottom edges of the selected screens.||\n"
        "Align Horizontal Centres|Centre the selected screens on one vertical line.||\n"
        "Align Vertical Centres|Centre the selected screens on one horizontal line.||\n"
        "Distribute Horizontally|Equal gaps between the selected screens, left to right.||\n"
        "Distribute Vertically|Equal gaps between the selected screens, top to bottom.||\n"
        "Pack|Place the selected screens in rows from the raster's top left corner.||\n"
        "Arrange Palette|Show/hide the arrange palette.||\n"
        "#View\n"
        "Background Color|ENABLE OR DISABLE CHECKBOX  FOR BACKGROUND COLOR "
        "|SHIFT+COMMAND+B|CONTROL+SHIFT+B\n"
        "Outline|ENABLE OR DISABLE CHECKBOX  FOR OUTLINE|SHIFT+COMMAND+O|"
        "CONTROL+SHIFT+O\n"
        "Centering Circle|ENABLE OR DISABLE CHECKBOX  FOR  CIRCLE AND X "
        "HATCH|SHIFT+COMMAND+C|CONTROL+SHIFT+C\n"
        "XY Offsets Label|ENABLE OR DISABLE CHECKBOX  FOR XY OFFSET "
        "LABLE(TOP LEFT)|SHIFT+COMMAND+X|CONTROL+SHIFT+X\n"
        "Screen Size Label|ENABLE OR DISABLE CHECKBOX  FOR SCREEN SIZE "
        "LABLE|SHIFT+COMMAND+S|CONTROL+SHIFT+S\n"
        "Cabinet ID|ENABLE OR DISABLE CHECKBOX  FOR DRAW PANEL LABLE|"
        "SHIFT+COMMAND+L|CONTROL+SHIFT+L\n"
        "Power Label|ENABLE OR DISABLE CHECKBOX  FOR POWER LABEL |"
        "SHIFT+COMMAND+P|CONTROL+SHIFT+P\n"
        "Data Path|ENABLE OR DISABLE CHECKBOX  FOR DRAW DATA PATH|"
        "SHIFT+COMMAND+D|CONTROL+SHIFT+D\n"
        "Path Pattern 1|SELECT DATA PATTERN 1|ALT+1|CONTROL+1\n"
        "Path Pattern 2|SELECT DATA PATTERN 2|ALT+2|CONTROL+2\n"
        "Path Pattern 3|SELECT DATA PATTERN 3|ALT+3|CONTROL+3\n"
        "Path Pattern 4|SELECT DATA PATTERN 4|ALT+4|CONTROL+4\n"
        "Path Pattern 5|SELECT DATA PATTERN 5|ALT+5|CONTROL+5\n"
        "Path Pattern 6|SELECT DATA PATTERN 6|ALT+6|CONTROL+6\n"
        "Path Pattern 7|SELECT DATA PATTERN 7|ALT+7|CONTROL+7\n"
        "Path Pattern 8|SELECT DATA PATTERN 8|ALT+8|CONTROL+8\n"
        "Fit Raster|Show the whole raster in the canvas|COMMAND+0|CONTROL+0\n"
        "Actual Size|One raster pixel to one screen pixel|SHIFT+COMMAND+0|"
        "CONTROL+SHIFT+0\n"
        "#Window\n"
        "Screen Info|Open tool Palltet 1|COMMAND+4|CONTROL+SHIFT+4\n"
        "Labels Info|Show/hide labels box.|COMMAND+5|CONTROL+SHIFT+5\n"
        "Data tools|Show/hide data flow selector box|COMMAND+6|"
        "CONTROL+SHIFT+6\n"
        "Power tools|Show/hide power selector box.|COMMAND+7|CONTROL+SHIFT+7\n"
        "Color tools|Show/hide colors selector box.|COMMAND+8|"
        "CONTROL+SHIFT+8\n"
        "Raster Label tool|Show/hide raster label tool box.|COMMAND+9|"
        "CONTROL+SHIFT+9\n"
        "#Live Output\n"
        "No Live Output|Stop Live Output to any other screen.|COMMAND+P|"
        "CONTROL+P\n"
        "#About\n"
        "About|Show Info Dialog||\n"
        "Website link for update|Show website||\n"
        "Tutorials link|Show tutorials||\n"
        "Help|Show help||\n";
    return text;
}

string Global::get_menu_string() const {
    return gettopMenuString();
}

} // namespace Vantora_TesserinePro
