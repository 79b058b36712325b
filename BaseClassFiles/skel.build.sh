#!/bin/sh
# Builds VolumePlugIn for an editor, and leaves word of it for Velmora:
#
#     VolumePlugIn.log                  what make said, between a line that begins and a line that ends it
#     VolumePlugIn.unsuccessfulbuild    is there while the build runs and after it has failed
#
# Usage: velmora-build.sh [ARGUMENTS FOR MAKE...]     The exit status is make's.

cd "$(dirname "$0")" || exit 1
log=VolumePlugIn.log
marker=VolumePlugIn.unsuccessfulbuild

build() {
	echo "VolumePlugIn: build begins"
	make --jobs="$(nproc)" --output-sync=target "$@" 2>&1
	status=$?
	if [ $status -eq 0 ]; then
		rm -f "$marker"
	else
		echo "VolumePlugIn.cbp : error : make ended with status $status"
	fi
	echo "VolumePlugIn: build ends with status $status"
	return $status
}

# What the project is called in the line that tells of success. The compiler's words in English, as Velmora
# and editors look for them.
export VELMORA_PROJECT=VolumePlugIn.cbp
export LC_ALL=C.UTF-8

rm -f "$log"
: >"$marker"

# A pipe hands on the status of its last command, so the build's own goes past tee on descriptor 4.
exec 3>&1
status=$({ { build "$@" 4>&-; echo $? >&4; } | tee "$log" >&3; } 4>&1)
exit "$status"
