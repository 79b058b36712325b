# Builds the plug-in library VolumePlugIn.so with GNU make:
#
#     make -j         makes what has changed, on all processors
#     make clean      removes what was made here; the library that hosts load stays
#
# Every *.cpp in this folder belongs to the plug-in. CXX, CXXFLAGS, CPPFLAGS and LDFLAGS may be set as usual.

# The folder that the library goes into: the next line, as it stands.
define PLUGINS_FOLDER
***PlugInsDir***
endef
export LIBRARY := $(value PLUGINS_FOLDER)/VolumePlugIn.so

CXX = g++
CXXFLAGS = -O2 -g -Wall -Wextra

# So that the workbench can replace the library while it runs: no symbols but the exports, none that keep it
# in memory, and a build id that tells one build from the next.
PLUGIN_CXXFLAGS := -std=c++20 -fPIC -fvisibility=hidden
PLUGIN_LDFLAGS := -shared -Wl,--build-id=sha1 -Wl,--no-undefined
ifeq ($(findstring clang,$(CXX)),)
PLUGIN_CXXFLAGS += -fno-gnu-unique
endif
ifneq ($(shell command -v ld.mold),)
PLUGIN_LDFLAGS += -fuse-ld=mold
endif

BUILD := .velmora/codeblocks
SOURCES := $(sort $(wildcard *.cpp))
OBJECTS := $(SOURCES:%.cpp=$(BUILD)/%.o)
COMPILE := $(CXX) $(CXXFLAGS) $(CPPFLAGS) $(PLUGIN_CXXFLAGS)
LINK := $(CXX) $(CXXFLAGS) $(LDFLAGS) $(PLUGIN_LDFLAGS)

ifneq ($(wildcard *\ *.cpp),)
$(error error: the name of a source holds a blank, which make cannot read; rename $(wildcard *\ *.cpp))
endif

.PHONY: all clean always
.DELETE_ON_ERROR:

# A host never meets half a library: it is copied beside its place and renamed.
all: $(BUILD)/VolumePlugIn.so
	@mkdir -p "$$(dirname "$$LIBRARY")"
	@cmp -s $< "$$LIBRARY" || { cp $< "$$LIBRARY.new" && mv -f "$$LIBRARY.new" "$$LIBRARY"; }
	@echo "$${VELMORA_PROJECT:-Makefile} -> $$LIBRARY"

$(BUILD)/VolumePlugIn.so: $(OBJECTS) $(BUILD)/settings
	$(LINK) $(OBJECTS) -ldl -o $@

$(BUILD)/%.o: %.cpp $(BUILD)/settings
	$(COMPILE) -MMD -MP -c $< -o $@

# All is made anew when the compiler, its flags or the set of sources change.
export SETTINGS := $(COMPILE) : $(LINK) : $(SOURCES)
$(BUILD)/settings: always
	@mkdir -p $(BUILD)
	@echo "$$SETTINGS" | cmp -s - $@ || echo "$$SETTINGS" >$@

clean:
	rm -rf $(BUILD)

-include $(OBJECTS:.o=.d)
