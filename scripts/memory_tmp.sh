# To be sourced: puts temporary files into memory where there is room. The tests flush thousands of small
# files, which a disk takes minutes for; that a flush reaches the disk is not what they can see.
if [ -z "${TMPDIR:-}" ] && [ -w /dev/shm ] &&
  [ "$(df --output=avail -k /dev/shm | tail -n 1)" -gt 2097152 ]; then
  export TMPDIR=/dev/shm
fi
