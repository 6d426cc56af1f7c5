# Read by CTest when it knows the system tests. Besides `desktop`, a test has the labels of the folders that its suite is nearest
# to: those whose defects it is the most likely to notice (scripts/mutate asks for them).
set(labels_of_RunFlow app framework runtime)
set(labels_of_UrlRun app)
set(labels_of_Activation target)
set(labels_of_ActivationSwitch target)
set(labels_of_ForegroundLock target)
set(labels_of_PatternSearch target)
set(labels_of_CopyData delivery)
set(labels_of_CopyDataEncoding delivery)
foreach(suite IN ITEMS WaitDialog CancellingAction HarmlessAction RandomActions AboutBox AboutBoxEntry AboutBoxKey AboutCommand ModalAboutBox
    TwoAboutBoxes)
  set(labels_of_${suite} delivery framework)
endforeach()
# Takes long, and repeats as a whole what the others look at one by one.
set(labels_of_Matrix matrix)

foreach(test IN LISTS system_tests)
  string(REGEX REPLACE "^system\\.([^.]*/)?([^./]+)\\..*" "\\2" suite "${test}")
  set_tests_properties("${test}" PROPERTIES LABELS "desktop;${labels_of_${suite}}")
endforeach()
