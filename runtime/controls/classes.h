#pragma once
// The library classes of this folder, which its Wire function registers.
namespace kelp {

struct ObjectDefinition;

ObjectDefinition *StaticTextDefinition();
ObjectDefinition *PushButtonDefinition();
ObjectDefinition *RadioButtonDefinition();
ObjectDefinition *CheckBoxDefinition();
ObjectDefinition *GroupBoxDefinition();
ObjectDefinition *LineDefinition();
ObjectDefinition *OvalDefinition();
ObjectDefinition *RectangleDefinition();
ObjectDefinition *RoundRectangleDefinition();
ObjectDefinition *ProgressBarDefinition();
ObjectDefinition *ScrollBarDefinition();
ObjectDefinition *SliderDefinition();
ObjectDefinition *PagePanelDefinition();
ObjectDefinition *TabPanelDefinition();
ObjectDefinition *PopupMenuDefinition();
ObjectDefinition *ComboBoxDefinition();

} // namespace kelp
