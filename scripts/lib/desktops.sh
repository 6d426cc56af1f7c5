# shellcheck shell=bash
# Tests on several desktops side by side; each takes its share of them. For sourcing, after desktop.sh.

# One more than there are cores: tests of windows mostly wait.
desktop_count=$(($(nproc) + 1))

# Runs the tests of a preset: test_on_desktops PRESET [CTEST-ARGUMENT…]. What they print comes afterwards, desktop by
# desktop. How each test that failed can be repeated is then in the file build/PRESET/desktops/repeat.txt.
# Programs of GoogleTest share their tests by the environment; what is labelled `once` has a desktop for itself.
test_on_desktops()
{
  local folder=build/$1/desktops
  rm -rf "$folder"
  local shard processes=()
  for ((shard = 0; shard < desktop_count; ++shard)); do
    GTEST_TOTAL_SHARDS=$desktop_count GTEST_SHARD_INDEX=$shard \
      test_on_one_desktop "$folder/$shard" "$@" --label-exclude '^once$' --no-tests=error &
    processes+=($!)
  done
  if (($# == 1)); then
    test_on_one_desktop "$folder/once" "$1" --label-regex '^once$' --no-tests=ignore &
    processes+=($!)
  fi
  local process result=0
  for process in "${processes[@]}"; do
    wait "$process" || result=1
  done
  cat "$folder"/*/output.txt
  note_how_to_repeat "$1" >"$folder/repeat.txt"
  return "$result"
}

# Each run of ctest writes its notes into a folder of its own: test_on_one_desktop FOLDER PRESET CTEST-ARGUMENT…
test_on_one_desktop()
{
  local folder=$1 preset=$2
  shift 2
  mkdir -p "$folder"
  echo "subdirs(\"$PWD/build/$preset\")" >"$folder/CTestTestfile.cmake"
  GTEST_BRIEF=1 ./scripts/desktop ctest --test-dir "$folder" --output-on-failure "$@" \
    >"$folder/output.txt" 2>&1
}

# What failed, from ctest's notes, and each test of GoogleTest in it.
note_how_to_repeat()
{
  local preset=$1
  cat "build/$preset"/desktops/*/Testing/Temporary/LastTestsFailed.log 2>/dev/null | sed 's/^[0-9]*://' | sort -u |
    while read -r test; do
      echo "To repeat $test: ./scripts/desktop ctest --preset $preset -R '^$test\$'"
    done
  grep -hE '^(To repeat|They ran) ' "build/$preset"/desktops/*/output.txt || true
}
