# cmake -DOUTPUT=FILE -DFORMS="a;b" -P form_factory.cmake: the one source that includes what uic made of the definitions.
set(includes "")
set(cases "")
foreach(form ${FORMS})
  string(APPEND includes "#include \"ui_${form}.h\"\n")
  string(APPEND cases "  if (name == \"${form}\") return Build<Ui::${form}>();\n")
endforeach()
file(WRITE ${OUTPUT} "#include \"ui/qt/form_factory.h\"

#include <QMainWindow>
#include <type_traits>

#include \"core/errors.h\"
${includes}
namespace zrt {

namespace {

template <class TDefinition>
std::unique_ptr<QWidget> Build() {
  TDefinition definition;
  if constexpr (std::is_invocable_v<decltype(&TDefinition::setupUi), TDefinition, QMainWindow*> &&
                !std::is_invocable_v<decltype(&TDefinition::setupUi), TDefinition, QWidget*>) {
    auto window = std::make_unique<QMainWindow>();
    definition.setupUi(window.get());
    return window;
  } else {
    auto window = std::make_unique<QWidget>();
    definition.setupUi(window.get());
    return window;
  }
}

}  // namespace

std::unique_ptr<QWidget> BuildFormWindow(const std::string& name) {
${cases}  throw Error(\"no window for form \" + name);
}

}  // namespace zrt
")
