#!/usr/bin/env bash
# Fails, listing the hits, when a source of the library or the store outside
# a POSIX platform file (*_posix.cpp, *_posix.h) includes a POSIX header or
# calls a POSIX function: such code belongs behind a platform layer. Comments
# and string literals are not looked at.
#
#   scripts/check-portable.sh [DIR...]     (default: src vesk)
set -euo pipefail
cd "$(dirname "$0")/.."

dirs=("$@")
[ ${#dirs[@]} -gt 0 ] || dirs=(src vesk)

files=$(find "${dirs[@]}" -type f \( -name '*.c' -o -name '*.cpp' -o -name '*.h' \) \
    ! -name '*_posix.cpp' ! -name '*_posix.h' | sort)
[ -n "$files" ] || exit 0

# Headers that Windows compilers lack (or that mean POSIX-only calls).
headers='unistd\.h|sys/(mman|wait|ioctl|socket|time|resource|select|uio|un|utsname|file|statvfs)\.h|dirent\.h|pthread\.h|dlfcn\.h|termios\.h|poll\.h|pwd\.h|grp\.h|libgen\.h|strings\.h|glob\.h|fnmatch\.h|spawn\.h|semaphore\.h|syslog\.h|netinet/[a-z]+\.h|arpa/[a-z]+\.h|stdio_ext\.h|pty\.h|utmp\.h'
# Calls by their POSIX names, also as ::name (not as members: x.open(),
# p->read(); nor std::...).
calls='open|openat|close|read|write|pread|pwrite|lseek|unlink|fstat|lstat|stat|mmap|munmap|msync|madvise|fsync|fdatasync|ftruncate|realpath|readlink|symlink|link|fork|vfork|exec[lv]p?e?|waitpid|wait|pipe|dup|dup2|kill|sigaction|getpid|getuid|isatty|ioctl|fcntl|poll|select|posix_openpt|grantpt|unlockpt|ptsname|ptsname_r|tcgetattr|tcsetattr|setsid|setenv|unsetenv|tzset|localtime_r|gmtime_r|timegm|strptime|clock_gettime|nanosleep|usleep|sleep|mkstemp|mkdtemp|opendir|readdir|closedir|strcasecmp|strncasecmp|dlopen|dlsym|pthread_[a-z_]+|getpwuid|sysconf|chmod|fchmod|umask'

status=0
# shellcheck disable=SC2086
perl -e '
    my ($headers, $calls) = (shift, shift);
    my $found = 0;
    for my $file (@ARGV) {
        open(my $fh, "<", $file) or die "$file: $!";
        my $text = do { local $/; <$fh> };
        close $fh;
        # Blank out comments and string literals, keeping the line breaks
        # (an #include <...> keeps its angle brackets, which are no string).
        $text =~ s{(/\*.*?\*/)|(//[^\n]*)|("(?:\\.|[^"\\\n])*")|(\x27(?:\\.|[^\x27\\\n])*\x27)}{
            my $m = $&; $m =~ s/[^\n]/ /g; $m }gse;
        my @lines = split /\n/, $text, -1;
        # Functions of the file itself that happen to bear a POSIX name.
        my %own;
        for my $line (@lines) {
            $own{$1} = 1 if $line =~ /^\s*(?:static\s+|inline\s+)*[\w:<>]+[\s*&]+($calls)\s*\([^;]*$/;
        }
        open($fh, "<", $file) or die;
        my @original = <$fh>;
        close $fh;
        for my $i (0 .. $#lines) {
            my $line = $lines[$i];
            my $hit = $line =~ /^\s*#\s*include\s*<($headers)>/;
            while (!$hit && $line =~ /(?<![\w.:>])(?:::)?($calls)\s*\(/g) {
                my ($name, $before) = ($1, substr($line, 0, $-[1]));
                next if $own{$name};
                # A declaration (std::string link(path);), not a call.
                next if $before =~ /(\w+)[\s*&]+$/ && $1 !~ /^(return|else|case|do)$/;
                $hit = 1;
            }
            next unless $hit;
            my $shown = $original[$i] // ""; chomp $shown; $shown =~ s/^\s+//;
            print "$file:" . ($i + 1) . ": $shown\n";
            $found = 1;
        }
    }
    exit($found ? 1 : 0);
' "$headers" "$calls" $files || status=$?

if [ "$status" -ne 0 ]; then
    echo "check-portable: POSIX headers or calls outside the platform layers (above)" >&2
fi
exit "$status"
