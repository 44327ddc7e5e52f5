! Makes the two tables against which the number fields of the channel layer are held:
!
!   field_text.txt   layout and 32-bit value -> the text of the field
!   free_field.txt   text -> the values that a free-field read takes from it
!
! Every outcome is what this compiler's run-time really wrote or read. Where the rules of this
! system differ from it, the row carries both outcomes and says so. The tables are data, kept
! beside this program, so that the tests need no Fortran; see make_tables.sh.
!
! field_text.txt holds values that were chosen: edges of fields, ties, both ends of the range. Random
! values are tested against an exact calculation instead.
module field_rows
    use, intrinsic :: iso_fortran_env, only: int32, int64, real32, compiler_version
    implicit none
    private
    public :: make_field_text, bits32, below, begin_draw

    integer :: out
    integer(int64) :: seed = 20240229_int64
    logical :: minus = .false.  ! the sign of the last row of one_sign

    character(4), parameter :: EXPONENT_LAYOUT(5) = ['E11 ', 'E12 ', 'E13 ', 'E16 ', 'ES12']
    integer, parameter :: EXPONENT_DIGITS(5) = [4, 5, 6, 9, 5]
    ! digits in front of the exponent in all: ES12.5 shows one more than its 5
    integer, parameter :: EXPONENT_SHOWN(5) = [4, 5, 6, 9, 6]

contains

    ! The multiplicative congruential generator 48271 mod 2**31 - 1: the tables must come out the
    ! same on every machine, so the run-time's own random numbers are not used.
    integer(int64) function draw()
        seed = mod(48271_int64*seed, 2147483647_int64)
        draw = seed
    end function

    subroutine begin_draw(first)
        integer(int64), intent(in) :: first
        seed = first
    end subroutine

    ! A number from 0 to n - 1.
    integer function below(n)
        integer, intent(in) :: n
        below = int(mod(draw()/16_int64, int(n, int64)))
    end function

    integer(int32) function bits32()
        integer(int32) :: high, low
        high = int(iand(shiftr(draw(), 9), 65535_int64), int32)
        low = int(iand(shiftr(draw(), 9), 65535_int64), int32)
        bits32 = ior(ishft(high, 16), low)
    end function

    logical function is_normal(bits)
        integer(int32), intent(in) :: bits
        integer(int32) :: e
        e = ibits(bits, 23, 8)
        is_normal = e > 0 .and. e < 255
    end function

    subroutine make_field_text(name)
        character(*), intent(in) :: name
        integer :: i
        integer, parameter :: WIDTHS(7) = [1, 2, 3, 5, 6, 10, 11]

        open (newunit=out, file=name, action='write', status='replace')
        write (out, '(a)') &
            '# Layout and 32-bit value -> text of the field. One case per line:', &
            '#', &
            '#   layout value|text                      both agree', &
            '#   layout value|text|differs|other text   text is this system''s, other text is the', &
            '#                                          run-time''s that made the table', &
            '#', &
            '# An integer value is in decimal, a real value is the eight hexadecimal digits of its', &
            '# bits. The text has exactly the width of the layout. Two differences: a zero, and a', &
            '# value that a field rounds to zero, is written here without a sign; what is no number', &
            '# fills its field with asterisks.', &
            '#', &
            '# Made by make_tables.f90, '//compiler_version()//'. Do not edit.'
        do i = 1, size(WIDTHS)
            call integer_rows(WIDTHS(i))
        end do
        do i = 1, size(EXPONENT_LAYOUT)
            call exponent_rows(EXPONENT_LAYOUT(i), EXPONENT_DIGITS(i), EXPONENT_SHOWN(i))
        end do
        call fixed_rows('F6.2', 6, 2)
        call fixed_rows('F10.3', 10, 3)
        close (out)
    end subroutine

    ! --- integers ---------------------------------------------------------------------------

    subroutine integer_rows(width)
        integer, intent(in) :: width
        integer :: i, p

        write (out, '(a,i0)') '## I', width
        call integer_row(width, 0)
        do i = 0, 9
            p = 10**i
            call integer_row(width, p - 1)
            call integer_row(width, p)
            call integer_row(width, p + 1)
            call integer_row(width, -p + 1)
            call integer_row(width, -p)
            call integer_row(width, -p - 1)
        end do
        call integer_row(width, huge(0))
        call integer_row(width, huge(0) - 1)
        call integer_row(width, -huge(0))
        call integer_row(width, -huge(0) - 1)
        do i = -12, 12
            call integer_row(width, i)
        end do
    end subroutine

    subroutine integer_row(width, value)
        integer, intent(in) :: width
        integer(int32), intent(in) :: value
        character(32) :: layout, text
        write (layout, '(a,i0)') 'I', width
        write (text, '('//trim(layout)//')') value
        write (out, '(a,1x,i0,2a)') trim(layout), value, '|', text(1:width)
    end subroutine

    ! --- reals ------------------------------------------------------------------------------

    subroutine real_row(layout, width, bits)
        character(*), intent(in) :: layout
        integer, intent(in) :: width
        integer(int32), intent(in) :: bits
        character(32) :: text, plain
        integer :: at

        write (text, '('//layout//')') transfer(bits, 0.0_real32)
        plain = text
        at = index(plain, '-')
        if (at > 0 .and. plain(at + 1:at + 1) == '0') then
            if (verify(mantissa_of(plain(at + 1:)), '0.') == 0) plain(at:at) = ' '
        end if
        if (ibits(bits, 23, 8) == 255) plain = repeat('*', width)
        if (plain == text) then
            write (out, '(a,1x,z8.8,2a)') layout, bits, '|', text(1:width)
        else
            write (out, '(a,1x,z8.8,4a)') layout, bits, '|', plain(1:width), '|differs|', text(1:width)
        end if
    end subroutine

    function mantissa_of(text)
        character(*), intent(in) :: text
        character(:), allocatable :: mantissa_of
        integer :: e
        e = index(text, 'E')
        if (e == 0) then
            mantissa_of = trim(text)
        else
            mantissa_of = text(1:e - 1)
        end if
    end function

    subroutine both_signs(layout, width, bits)
        character(*), intent(in) :: layout
        integer, intent(in) :: width
        integer(int32), intent(in) :: bits
        if (.not. is_normal(bits)) return
        call real_row(layout, width, ibclr(bits, 31))
        call real_row(layout, width, ibset(bits, 31))
    end subroutine

    ! The signs take turns from row to row.
    subroutine one_sign(layout, width, bits)
        character(*), intent(in) :: layout
        integer, intent(in) :: width
        integer(int32), intent(in) :: bits
        if (.not. is_normal(bits)) return
        minus = .not. minus
        call real_row(layout, width, merge(ibset(bits, 31), ibclr(bits, 31), minus))
    end subroutine

    ! A value and the one on each side of it.
    subroutine with_neighbours(layout, width, value)
        character(*), intent(in) :: layout
        integer, intent(in) :: width
        real(real32), intent(in) :: value
        integer :: i
        do i = -1, 1
            call one_sign(layout, width, transfer(value, 0_int32) + i)
        end do
    end subroutine

    ! Both signs, where that of a negative value may find no room.
    subroutine with_neighbours_of_both_signs(layout, width, value)
        character(*), intent(in) :: layout
        integer, intent(in) :: width
        real(real32), intent(in) :: value
        integer :: i
        do i = -1, 1
            call both_signs(layout, width, transfer(value, 0_int32) + i)
        end do
    end subroutine

    subroutine extreme_rows(layout, width)
        character(*), intent(in) :: layout
        integer, intent(in) :: width
        integer(int32), parameter :: INFINITE = int(z'7F800000', int32), NO_NUMBER = int(z'7FC00000', int32)
        integer :: i
        character(8) :: text
        real(real32) :: p

        call real_row(layout, width, 0)
        call real_row(layout, width, ibset(0, 31))
        do i = 0, 3
            call both_signs(layout, width, transfer(tiny(1.0_real32), 0_int32) + i)
            call both_signs(layout, width, transfer(huge(1.0_real32), 0_int32) - i)
        end do
        ! below the smallest normal number, and no number
        do i = 0, 22, 11
            call real_row(layout, width, ibset(0, i))
            call real_row(layout, width, ibset(transfer(tiny(1.0_real32), 0_int32) - ibset(0, i), 31))
        end do
        call real_row(layout, width, INFINITE)
        call real_row(layout, width, ibset(INFINITE, 31))
        call real_row(layout, width, NO_NUMBER)
        do i = -37, 38
            if (abs(i) > 12 .and. mod(i, 5) /= 0 .and. i > -36 .and. i < 38) cycle
            write (text, '(a,i0)') '1E', i
            read (text, *) p
            call with_neighbours(layout, width, p)
        end do
    end subroutine

    ! Values as people type them: nearly all lie a little beside the decimal they stand for, and
    ! those whose last digit is a 5 only look like ties.
    subroutine typed_rows(layout, width)
        character(*), intent(in) :: layout
        integer, intent(in) :: width
        integer :: i
        character(16) :: text
        real(real32) :: v
        do i = 1, 24
            write (text, '(i0,a,i0)') below(2000)*5 + mod(i, 2), 'E-', below(6)
            read (text, *) v
            call one_sign(layout, width, transfer(v, 0_int32))
        end do
    end subroutine

    subroutine exponent_rows(stem, digits, shown)
        character(*), intent(in) :: stem
        integer, intent(in) :: digits, shown
        character(8) :: layout
        integer :: width

        write (layout, '(2a,i0)') trim(stem), '.', digits
        read (stem(scan(stem, '123456789'):), *) width
        write (out, '(2a)') '## ', trim(layout)
        call extreme_rows(trim(layout), width)
        call ties(trim(layout), width, shown)
        call typed_rows(trim(layout), width)
        call near_ties(trim(layout), width, shown)
    end subroutine

    ! Values a hair beside a tie, less than 1e-5 of the last digit: the digits behind the last one
    ! shown are 49999 or 50000. They show a writer that rounds what it has rounded before.
    subroutine near_ties(layout, width, n)
        character(*), intent(in) :: layout
        integer, intent(in) :: width, n
        character(60) :: text
        integer(int32) :: bits
        integer :: found

        found = 0
        do while (found < 24)
            bits = bits32()
            if (.not. is_normal(bits)) cycle
            write (text, '(es60.30e3)') abs(transfer(bits, 0.0_real32))
            text = adjustl(text)
            ! the digits are at 1 and from 3 on
            if (text(n + 2:n + 6) /= '49999') then
                if (text(n + 2:n + 6) /= '50000') cycle
                if (verify(text(n + 7:32), '0') == 0) cycle
            end if
            call real_row(layout, width, bits)
            found = found + 1
        end do
    end subroutine

    ! Exact ties of a layout that shows n digits: values whose decimal digits end with a 5 in
    ! place n + 1. Such a value is m/2**k, m odd, with n + 1 digits in m*5**k; or, as a whole
    ! number, an odd multiple of 5 times a power of ten. One bit up and down goes with each.
    subroutine ties(layout, width, n)
        character(*), intent(in) :: layout
        integer, intent(in) :: width, n
        integer(int64) :: lowest, highest, m, span
        integer :: k, j, i

        do k = 0, 22
            lowest = (10_int64**n + 5_int64**k - 1)/5_int64**k
            highest = min(2_int64**24 - 1, (10_int64**(n + 1) - 1)/5_int64**k)
            span = highest - lowest + 1
            if (span <= 0) cycle
            do i = 0, 3
                select case (i)
                case (0)
                    m = lowest
                case (1)
                    m = highest - 9
                case default
                    m = lowest + mod(draw(), span)
                end select
                if (k == 0) m = m - mod(m, 10_int64) + 5
                m = ior(m, 1_int64)
                if (m < lowest .or. m > highest) cycle
                call with_neighbours(layout, width, real(m, real32)/2.0_real32**k)
            end do
        end do
        do j = 1, 9
            lowest = 10_int64**n
            highest = min((2_int64**24 - 1)/5_int64**j, 10_int64**(n + 1) - 1)
            span = highest - lowest + 1
            if (span <= 0) cycle
            do i = 1, 3
                m = lowest + mod(draw(), span)
                m = m - mod(m, 10_int64) + 5
                if (m > highest) cycle
                call with_neighbours(layout, width, real(m*5_int64**j, real32)*2.0_real32**j)
            end do
        end do
    end subroutine

    subroutine fixed_rows(layout, width, decimals)
        character(*), intent(in) :: layout
        integer, intent(in) :: width, decimals
        integer :: i, whole
        real(real32) :: v
        character(16) :: text

        write (out, '(2a)') '## ', layout
        call extreme_rows(layout, width)
        ! ties: an odd number of the eighths (two decimals) or sixteenths (three) has one decimal
        ! more than the field, and that is a 5
        whole = 10**(width - decimals - 1)
        do i = 1, 40
            v = real(2*below(min(whole, 10**(1 + mod(i, 6)))*2**decimals) + 1, real32)/2.0_real32**(decimals + 1)
            call with_neighbours(layout, width, v)
        end do
        ! the edge between the field's zero and its smallest value, and that of the asterisks
        do i = 1, 10
            write (text, '(i0,a,i0)') i, 'E-', decimals + 1
            read (text, *) v
            call with_neighbours(layout, width, v)
            write (text, '(i0,a,i0)') i, 'E-', decimals + 2
            read (text, *) v
            call with_neighbours(layout, width, v)
        end do
        do i = 0, 9
            v = real(i, real32)/10.0_real32**decimals/2
            call with_neighbours_of_both_signs(layout, width, real(whole, real32) - v)
            call with_neighbours_of_both_signs(layout, width, real(whole/10, real32) - v)
        end do
        call typed_rows(layout, width)
    end subroutine

end module field_rows

module free_rows
    use, intrinsic :: iso_fortran_env, only: int32, int64, real32, real64, iostat_end, compiler_version
    use, intrinsic :: ieee_arithmetic, only: ieee_is_finite
    use field_rows, only: below, bits32, begin_draw
    implicit none
    private
    public :: make_free_field

    integer :: out
    integer, parameter :: MOST = 40
    integer(int32), parameter :: KEPT_I = -1090518941
    real(real32), parameter :: KEPT_R = transfer(KEPT_I, 0.0_real32)
    character(*), parameter :: WORK = 'free_field_case.tmp'
    character(*), parameter :: WHY_NULL = 'a comma with no value before it is a null, also at the beginning of a line'
    logical :: beyond, too_small  ! what the last read met: an infinity or no number; a denormal

contains

    subroutine make_free_field(name)
        character(*), intent(in) :: name
        call begin_draw(293894255_int64)
        open (newunit=out, file=name, action='write', status='replace')
        write (out, '(a)') &
            '# Text -> values of free-field reads. One case per line:', &
            '#', &
            '#   reads|text|first|second                                  both agree', &
            '#   reads|text|first|second|differs|first|second|why         the first pair is this', &
            '#                      system''s, the second pair the run-time''s that made the table', &
            '#', &
            '# reads   two reads, one after the other on the same channel, or "-" for no second one.', &
            '#         Letters (IRR) are single variables, I integer and R real; i5 or r5 is a list of', &
            '#         five integers or reals.', &
            '# text    the whole file, with \n \r \t \\ and \xHH', &
            '# first, second   what each read leaves in its variables: an integer in decimal, a real', &
            '#         as the hexadecimal digits of its bits, "_" a variable that stands as before;', &
            '#         "error" for a text that is no such number, "end" where the lines run out. Both', &
            '#         end the run, so that there is no second read; where a faulty number comes on', &
            '#         lines that run out later, either may stand here.', &
            '#', &
            '# A zero counts as equal whichever its sign. A line that begins with ## heads a group.', &
            '#', &
            '# Made by make_tables.f90, '//compiler_version()//'. Do not edit.'
        call plain_rows
        call layout_of_lines_rows
        call null_rows
        call repeat_rows
        call slash_rows
        call real_form_rows
        call range_rows
        call touching_rows
        call error_rows
        call drawn_rows
        call drawn_repeat_rows
        call drawn_field_rows
        call written_rows
        call midpoint_rows
        close (out)
    end subroutine

    subroutine note(text)
        character(*), intent(in) :: text
        write (out, '(2a)') '## ', text
    end subroutine

    ! A case on which both agree.
    subroutine same(reads, text)
        character(*), intent(in) :: reads, text
        character(:), allocatable :: first, second
        call outcome(reads, text, first, second)
        if (beyond .or. too_small) then
            print '(3a)', 'not on common ground: ', reads//'|'//text, '|'//first
            error stop 1
        end if
        write (out, '(7a)') reads, '|', text, '|', first, '|', second
    end subroutine

    ! A case whose outcome here, ours_first and ours_second, is another than the run-time's.
    subroutine differs(reads, text, ours_first, ours_second, why)
        character(*), intent(in) :: reads, text, ours_first, ours_second, why
        character(:), allocatable :: first, second
        call outcome(reads, text, first, second)
        if (first == ours_first .and. second == ours_second) then
            print '(4a)', 'no difference: ', reads, '|', text
            error stop 1
        end if
        write (out, '(15a)') reads, '|', text, '|', ours_first, '|', ours_second, '|differs|', first, '|', &
            second, '|', why
    end subroutine

    ! --- reading ----------------------------------------------------------------------------

    subroutine outcome(reads, text, first, second)
        character(*), intent(in) :: reads, text
        character(:), allocatable, intent(out) :: first, second
        integer :: unit, gap

        call write_work(unescaped(text))
        open (newunit=unit, file=WORK, form='formatted', status='old', action='read')
        beyond = .false.
        too_small = .false.
        gap = index(reads, ' ')
        call one_read(unit, reads(:gap - 1), first)
        second = '-'
        if (first /= 'error' .and. first /= 'end' .and. reads(gap + 1:) /= '-') &
            call one_read(unit, reads(gap + 1:), second)
        close (unit, status='delete')
    end subroutine

    subroutine write_work(bytes)
        character(*), intent(in) :: bytes
        integer :: unit
        open (newunit=unit, file=WORK, access='stream', form='unformatted', status='replace')
        write (unit) bytes
        close (unit)
    end subroutine

    ! The outcome of a text, each read of which finds its lines as one. apart: the text has a real
    ! that is kept here in another way.
    subroutine joined_outcome(reads, text, first, second, apart)
        character(*), intent(in) :: reads, text
        character(:), allocatable, intent(out) :: first, second
        logical, intent(out) :: apart
        character(:), allocatable :: rest
        character(1000) :: line
        integer :: unit, gap, status

        gap = index(reads, ' ')
        call outcome(reads(:gap - 1)//' -', joined(text), first, second)
        apart = beyond .or. too_small
        if (first == 'error' .or. first == 'end' .or. reads(gap + 1:) == '-') return
        ! the second read begins where the first one, on the lines as they are, came to an end
        call write_work(joined_as_far(reads(:gap - 1), text, first))
        open (newunit=unit, file=WORK, form='formatted', status='old', action='read')
        rest = ''
        do
            read (unit, '(a)', iostat=status) line
            if (status /= 0) exit
            rest = rest//trim(line)//' '
        end do
        close (unit, status='delete')
        call outcome(reads(gap + 1:)//' -', rest//'\n', second, rest)
        apart = apart .or. beyond .or. too_small
    end subroutine

    ! The lines of a text after those that a read needs for its outcome: after the fewest that give it.
    function joined_as_far(kinds, text, first) result(rest)
        character(*), intent(in) :: kinds, text, first
        character(:), allocatable :: rest, found, none
        integer :: i, break

        i = 1
        do
            break = index(text(i:), '\n')
            if (break == 0) error stop 1
            i = i + break + 1
            call outcome(kinds//' -', joined(text(:i - 1)), found, none)
            if (found == first) exit
        end do
        rest = unescaped(text(i:))
    end function

    function joined(text)
        character(*), intent(in) :: text
        character(:), allocatable :: joined
        integer :: i
        joined = text
        do
            i = index(joined, '\n')
            if (i == 0) exit
            joined(i:i + 1) = ' '
        end do
        joined = joined//'\n'
    end function

    function unescaped(text)
        character(*), intent(in) :: text
        character(:), allocatable :: unescaped
        integer :: i, code
        unescaped = ''
        i = 1
        do while (i <= len(text))
            if (text(i:i) /= '\') then
                unescaped = unescaped//text(i:i)
                i = i + 1
                cycle
            end if
            select case (text(i + 1:i + 1))
            case ('n')
                unescaped = unescaped//achar(10)
            case ('r')
                unescaped = unescaped//achar(13)
            case ('t')
                unescaped = unescaped//achar(9)
            case ('x')
                read (text(i + 2:i + 3), '(z2)') code
                unescaped = unescaped//char(code)
                i = i + 2
            case default
                unescaped = unescaped//text(i + 1:i + 1)
            end select
            i = i + 2
        end do
    end function

    subroutine one_read(unit, kinds, found)
        integer, intent(in) :: unit
        character(*), intent(in) :: kinds
        character(:), allocatable, intent(out) :: found
        integer(int32) :: i(MOST)
        real(real32) :: r(MOST)
        integer :: status, n

        i = KEPT_I
        r = KEPT_R
        n = len(kinds)
        select case (kinds)
        case ('I'); read (unit, *, iostat=status) i(1)
        case ('R'); read (unit, *, iostat=status) r(1)
        case ('II'); read (unit, *, iostat=status) i(1), i(2)
        case ('IR'); read (unit, *, iostat=status) i(1), r(2)
        case ('RI'); read (unit, *, iostat=status) r(1), i(2)
        case ('RR'); read (unit, *, iostat=status) r(1), r(2)
        case ('III'); read (unit, *, iostat=status) i(1), i(2), i(3)
        case ('IIR'); read (unit, *, iostat=status) i(1), i(2), r(3)
        case ('IRI'); read (unit, *, iostat=status) i(1), r(2), i(3)
        case ('IRR'); read (unit, *, iostat=status) i(1), r(2), r(3)
        case ('RII'); read (unit, *, iostat=status) r(1), i(2), i(3)
        case ('RIR'); read (unit, *, iostat=status) r(1), i(2), r(3)
        case ('RRI'); read (unit, *, iostat=status) r(1), r(2), i(3)
        case ('RRR'); read (unit, *, iostat=status) r(1), r(2), r(3)
        case ('IIRR'); read (unit, *, iostat=status) i(1), i(2), r(3), r(4)
        case ('IRRI'); read (unit, *, iostat=status) i(1), r(2), r(3), i(4)
        case ('IIIIR'); read (unit, *, iostat=status) i(1), i(2), i(3), i(4), r(5)
        case default
            read (kinds(2:), *) n
            if (kinds(1:1) == 'i') then
                read (unit, *, iostat=status) i(1:n)
            else if (kinds(1:1) == 'r') then
                read (unit, *, iostat=status) r(1:n)
            else
                print '(2a)', 'no such read: ', kinds
                error stop 1
            end if
        end select
        if (status == iostat_end) then
            found = 'end'
        else if (status /= 0) then
            found = 'error'
        else
            call list_values(kinds, n, i, r, found)
        end if
    end subroutine

    subroutine list_values(kinds, n, i, r, found)
        character(*), intent(in) :: kinds
        integer, intent(in) :: n
        integer(int32), intent(in) :: i(MOST)
        real(real32), intent(in) :: r(MOST)
        character(:), allocatable, intent(out) :: found
        character(12) :: text
        character :: kind
        integer :: k

        found = ''
        do k = 1, n
            kind = kinds(1:1)
            if (kind == 'I' .or. kind == 'R') kind = kinds(k:k)
            if (kind == 'i' .or. kind == 'I') then
                write (text, '(i0)') i(k)
                if (i(k) == KEPT_I) text = '_'
            else
                write (text, '(z8.8)') r(k)
                if (transfer(r(k), 0_int32) == KEPT_I) text = '_'
                beyond = beyond .or. .not. ieee_is_finite(r(k))
                too_small = too_small .or. (ieee_is_finite(r(k)) .and. abs(r(k)) > 0 .and. abs(r(k)) < tiny(r(k)))
            end if
            if (k > 1) found = found//' '
            found = found//trim(text)
        end do
    end subroutine

    ! --- cases ------------------------------------------------------------------------------

    subroutine plain_rows
        call note('plain values')
        call same('I -', '5\n')
        call same('I -', '-5\n')
        call same('I -', '+3\n')
        call same('I -', '007\n')
        call same('I -', '-0\n')
        call same('I -', '000000000000000012\n')
        call same('I I', '5\n6\n')
        call same('I I', '5')
        call same('I I', '5\n6')
        call same('i3 i1', '1 2 3\n4\n')
        call same('III I', '1 2 3\n4\n')
        call same('III I', '1 2 3 99\n4\n')
        call same('I I', '1 2 3 99\n4\n')
        call same('I R', '1 text that nobody reads\n4\n')
        call same('I R', '1 *** NaN ; ''"\n4\n')
        call same('R -', '5\n')
        call same('R R', '1.25\n-2.5\n')
        call same('IRR I', '12 1.5 -2.5\n13\n')
        call same('IIRR I', '    7    1  0.100000E+01 -0.250000E+02\n    8\n')
        call same('IIIIR I', '1 2 3 4 5\n6\n')
        call same('RIR -', '1 2 3\n')
        call same('IRRI -', '1 2 3 4\n')
        call same('r3 r2', '1.5 2.5 3.5\n4.5 5.5\n')
        call same('r13 I', ' 0.10000E+01 0.20000E+01 0.30000E+01 0.40000E+01 0.50000E+01 0.60000E+01'// &
            ' 0.70000E+01 0.80000E+01 0.90000E+01 0.10000E+02 0.11000E+02 0.12000E+02 0.13000E+02\n5\n')
        call same('i30 I', '1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 20 21 22 23 24 25 26 27 28 29 30\n5\n')
        call same('II I', '1                                                                            '// &
            '                                                                      2\n5\n')
    end subroutine

    subroutine layout_of_lines_rows
        character(*), parameter :: unended = 'a last line without an end counts like any other'
        call note('values across lines, blanks, tabs, commas and line ends')
        call same('i3 i1', '1\n2\n3\n4\n')
        call same('i3 i1', '1 2\n3\n4\n')
        call same('i3 i1', '1 2\n3 9 9\n4\n')
        call same('i3 i1', '1\n\n\n2 3\n\n4\n')
        call same('i3 i1', '\n\n1 2 3\n4\n')
        call same('i3 i1', '   \n \t \n1 2 3\n4\n')
        call same('I I', '5\n\n\n6\n')
        call same('I I', '5\n   \n\t\n6\n')
        call same('II I', '\t1\t2\t\n3\n')
        call same('II I', '\t1 \t ,\t 2\t\n3\n')
        call same('II I', '  1  2  \n3\n')
        call same('II I', '1,2\n3\n')
        call same('II I', '1 ,2\n3\n')
        call same('II I', '1, 2\n3\n')
        call same('II I', '1  ,  2\n3\n')
        call same('II I', '1,\n2\n3\n')
        call same('II I', '1 , \n 2\n3\n')
        call same('II I', '1\n,2\n3\n')
        call same('II I', '1 \n , 2\n3\n')
        call same('II I', '1\n\n,2\n3\n')
        call same('II I', '1,\n\n2\n3\n')
        call same('II I', '1,2,\n3\n')
        call same('II I', '1,2 ,\n3\n')
        call same('II I', '1,2,,,\n3\n')
        call same('II I', '1 2\n,3\n')
        call same('II II', '1 2,\n,3\n')
        call same('IR I', '1,\n2.5\n3\n')
        call same('RR R', '1.5,\n2.5\n3.5\n')
        call same('RR R', '1.5\n,2.5\n3.5\n')
        call same('I I', '1\r\n2\r\n')
        call same('II I', '1 2\r\n3\r\n')
        call same('II I', '1\r\n2\r\n3\r\n')
        call same('II I', '1,\r\n2\r\n3\r\n')
        call same('II I', '1\r\n\r\n2\r\n\r\n3\r\n')
        call same('RR R', '1.5\r\n2E1\r\n3.\r\n')
        call same('IR I', '1 /\r\n2\r\n')
        call note('the lines run out')
        call same('I -', '')
        call same('I -', '\n')
        call same('I -', '  \n\n  ')
        call same('R -', '')
        call same('i3 -', '1 2')
        call same('i3 -', '1 2\n')
        call same('i3 -', '1 2\n\n\n')
        call same('II I', '1 2\n')
        call same('II I', '1 2')
        call same('RR -', '1.5\n')
        call same('I I', '1\n\n')
        call same('I I', '1\n  ')
        call note('a last line without an end')
        call same('I I', '1\n2')
        call same('II -', '1 2')
        call same('II -', '1,2')
        call same('II I', '1,2,')
        call same('II I', '1 2  ')
        call same('RR I', '1. 2.')
        call same('RR I', '1E1 .5')
        call same('II I', '2*7')
        call same('II I', ',2')
        call same('I I', '1,')
        call same('II -', '1,')
        call same('III -', '1,2,')
        call same('I I', '/ ')
        call same('I -', '5x')
        call differs('R -', '1E', 'error', '-', unended)
        call differs('I -', '-', 'error', '-', unended)
        call differs('I I', '/', '_', 'end', unended)
        call differs('I I', '1\n/', '1', '_', unended)
        call differs('III I', '1 /', '1 _ _', 'end', unended)
        call differs('RR I', '1.5/', '3FC00000 _', 'end', unended)
    end subroutine

    subroutine null_rows
        call note('nulls')
        call same('II I', ',2\n3\n')
        call same('II I', ' , 2\n3\n')
        call same('III I', '1,,3\n4\n')
        call same('III I', '1, ,3\n4\n')
        call same('III I', '1 , , 3\n4\n')
        call same('III I', ',,3\n4\n')
        call same('III I', ',,,\n4\n')
        call same('III I', '1,\n,3\n4\n')
        call same('III I', '1,,\n3\n4\n')
        call same('III I', '1\n,,3\n4\n')
        call same('III I', '1,\t,3\n4\n')
        call same('r3 I', '1.5,,3.5\n4\n')
        call same('r3 I', ',,3.5\n4\n')
        call same('RIR I', ',,3.5\n4\n')
        call same('RIR I', '1.5,,3.5\n4\n')
        call same('I I', ',\n4\n')
        call same('I I', ',5\n4\n')
        call same('II I', ',,\n4\n')
        call same('i5 I', '1,,,,5\n4\n')
        call same('i5 I', ',2,,4,\n5\n6\n')
        call same('R R', ',\n4\n')
        call note('nulls at the beginning of a line')
        call same('II I', ',\n2\n4\n')
        call same('III I', '1,\n,3\n4\n')
        call same('III I', '1,\n\n,3\n4\n')
        call same('III I', '1,\n/\n4\n')
        call differs('II I', '\n,2\n4\n', '_ 2', '4', WHY_NULL)
        call differs('II I', '  \n , 2\n4\n', '_ 2', '4', WHY_NULL)
        call differs('RR I', '\n\n,2\n4\n', '_ 40000000', '4', WHY_NULL)
        call differs('I I', '\n,\n4\n', '_', '4', WHY_NULL)
        call differs('I II', '1\n\n,3\n4\n', '1', '_ 3', WHY_NULL)
        call differs('III I', '1\n,\n,3\n4\n', '1 _ 3', '4', WHY_NULL)
        call same('III I', '1 ,\n , \n 3\n4\n')
        call same('i4 I', '1,\n,\n,4\n5\n')
        call differs('r3 I', '1.5\n,\n,3.5\n4\n', '3FC00000 _ 40600000', '4', WHY_NULL)
        call differs('i4 I', '2*1\n,\n,4\n5\n', '1 1 _ 4', '5', WHY_NULL)
    end subroutine

    subroutine repeat_rows
        character(*), parameter :: mixed = 'a repeated value may fill integer and real variables alike'
        call note('repeats')
        call same('i3 I', '3*7\n4\n')
        call same('III I', '3*7\n4\n')
        call same('i3 I', '2*7 8\n4\n')
        call same('i3 I', '2*7,8\n4\n')
        call same('i3 I', '6 2*-7\n4\n')
        call same('i3 I', '6,2*+7,9\n4\n')
        call same('i2 I', '5*7\n4\n')
        call same('i5 I', '2*7\n3*8\n4\n')
        call same('i5 I', '2*7 2*8 1*9\n4\n')
        call same('i3 I', '03*7\n4\n')
        call same('r3 R', '3*1.5\n4\n')
        call same('RRR R', '3*-.5E1\n4\n')
        call same('r3 R', '2*1.5D1 1*4\n4\n')
        call same('r3 R', '2*1.5+1,4\n4\n')
        call same('i2 I', '100000000*7\n4\n')
        call note('repeated nulls')
        call same('i3 I', '3*\n4\n')
        call same('i3 I', '2* 8\n4\n')
        call same('i3 I', '2*,8\n4\n')
        call same('i3 I', '2* ,8\n4\n')
        call same('i3 I', '1 2*\n4\n')
        call same('i4 I', '1,2*,8\n4\n')
        call same('i4 I', '2*\n7 8\n4\n')
        call same('i4 I', '3*\n,8\n4\n')
        call same('r3 I', '2* 1.5\n4\n')
        call same('r3 I', '5*\n4\n')
        call same('IR I', '2*\n4\n')
        call same('IRR I', '2* 1.5\n4\n')
        call same('i3 I', '2*/\n4\n')
        call same('i3 I', '1*/\n4\n')
        call same('i3 I', '1*,1*,5\n4\n')
        call note('repeats over variables of both kinds')
        call differs('IR I', '2*7\n4\n', '7 40E00000', '4', mixed)
        call differs('RI I', '2*7\n4\n', '40E00000 7', '4', mixed)
        call differs('RII I', '3*-7\n4\n', 'C0E00000 -7 -7', '4', mixed)
        call differs('IIRR I', '1,2*2,3\n4\n', '1 2 40000000 40400000', '4', mixed)
        call differs('IIIIR I', '5*0\n4\n', '0 0 0 0 00000000', '4', mixed)
        call same('IR I', '2*1.5\n4\n')
        call same('RI I', '2*1.5\n4\n')
        call same('RI I', '2*7.\n4\n')
        call note('faulty repeats')
        call same('i3 -', '0*7 1 2 3\n')
        call same('i3 -', '0* 1 2 3\n')
        call same('r3 -', '0*7 1 2 3\n')
        call same('i3 -', '-2*7 1 2 3\n')
        call same('i3 -', '+2*7 1 2 3\n')
        call same('r3 -', '-2*7 1 2 3\n')
        call same('r3 -', '1.5*7 1 2 3\n')
        call same('r3 -', '1E1*7 1 2 3\n')
        call same('i3 -', '2*3*4 1 2 3\n')
        call same('r3 -', '2*3*4 1 2 3\n')
        call same('i3 -', '2**4 1 2 3\n')
        call same('i3 -', '*4 1 2 3\n')
        call same('r3 -', '*4 1 2 3\n')
        call same('i3 -', '2 *4 1 2 3\n')
        call same('r3 -', '2 *4 1 2 3\n')
        call same('i3 -', '2 * 4 1 2 3\n')
        call same('i3 -', '2*x 1 2 3\n')
        call same('r3 -', '2*x 1 2 3\n')
        call same('i3 -', '2*4x 1 2 3\n')
        call same('i3 -', '2*1.5 1 2 3\n')
        call same('i3 -', '2*- 1 2 3\n')
        call same('i3 -', '99999999999*7\n')
        call same('r3 -', '99999999999*7\n')
        call same('i3 -', '99999999999999999999999999*7\n')
    end subroutine

    subroutine slash_rows
        call note('slashes')
        call same('III I', '1 /\n4\n')
        call same('III I', '1/\n4\n')
        call same('III I', '1,/\n4\n')
        call same('III I', '1 , / 5 6\n4\n')
        call same('III I', '1/2/3\n4\n')
        call same('III I', '/\n4\n')
        call same('III I', ' / text that nobody reads\n4\n')
        call same('III I', '\n\n/\n4\n')
        call same('III I', '1\n/ 5 6\n4\n')
        call same('III I', '1,\n/ 5 6\n4\n')
        call same('III I', '1\n2\n/\n4\n')
        call same('III I', '1 2 3/\n4\n')
        call same('III I', '1 2 3 /\n4\n')
        call same('III I', '1 2 3\n/\n4\n')
        call same('III I', ',2/\n4\n')
        call same('III I', ',/\n4\n')
        call same('III I', '1,,/\n4\n')
        call same('r3 R', '1.5/\n4\n')
        call same('r3 R', '1.5E1/\n4\n')
        call same('r3 R', '1./\n4\n')
        call same('r3 R', '.5/\n4\n')
        call same('r3 R', '1+1/\n4\n')
        call same('r3 R', '1.5\n/\n4\n')
        call same('IRR I', '1 2.5/\n4\n')
        call same('i3 I', '2*5/\n4\n')
    end subroutine

    subroutine real_form_rows
        call note('forms of reals')
        call same('R -', '.5\n')
        call same('R -', '5.\n')
        call same('R -', '+3\n')
        call same('R -', '+.5\n')
        call same('R -', '-.5\n')
        call same('R -', '-5.\n')
        call same('R -', '0\n')
        call same('R -', '0.\n')
        call same('R -', '.0\n')
        call same('R -', '-0\n')
        call same('R -', '-0.0\n')
        call same('R -', '-0.0E+00\n')
        call same('R -', '00012.500\n')
        call same('R -', '1.5E3\n')
        call same('R -', '1.5e3\n')
        call same('R -', '1.5D3\n')
        call same('R -', '1.5d3\n')
        call same('R -', '1.5E+3\n')
        call same('R -', '1.5E-3\n')
        call same('R -', '1.5D+03\n')
        call same('R -', '1.5d-03\n')
        call same('R -', '1.5E+003\n')
        call same('R -', '1.5E0000000003\n')
        call same('R -', '1.5E+00\n')
        call same('R -', '1.5+3\n')
        call same('R -', '1.5-3\n')
        call same('R -', '1.5+03\n')
        call same('R -', '15+3\n')
        call same('R -', '-15-3\n')
        call same('R -', '5.+3\n')
        call same('R -', '.5+3\n')
        call same('R -', '+.5-3\n')
        call same('R -', '5.E3\n')
        call same('R -', '.5E3\n')
        call same('R -', '5E3\n')
        call same('R -', '5D3\n')
        call same('R -', '-5.D-1\n')
        call same('R -', '0.123456E+02\n')
        call same('R -', ' 0.123456789E+02\n')
        call same('RR R', '1.5 +3\n4\n')
        call same('RR R', '1.5,-3\n4\n')
        call same('r4 R', '1E1,1E+1 1D1\n1+1\n4\n')
        call note('digits and rounding of reals')
        call same('R -', '16777216\n')
        call same('R -', '16777217\n')
        call same('R -', '16777218\n')
        call same('R -', '16777219\n')
        call same('R -', '16777217.0000000000000000000000000000001\n')
        call same('R -', '1.000000059604644775390625\n')
        call same('R -', '1.00000005960464477539062500000000000000001\n')
        call same('R -', '1.00000005960464477539062499999999999999999\n')
        call same('R -', '1.000000178813934326171875\n')
        call same('R -', '0.1\n')
        call same('R -', '0.333333333333333333333333333333333333333333333333333333333333333333333333\n')
        call same('R -', '3.14159265358979323846264338327950288419716939937510582097494459230781640628620899\n')
        call same('R -', '2147483647\n')
        call same('R -', '2147483648\n')
        call same('R -', '99999999999999999999\n')
        call same('R -', '0.00000000000000000000000000000000000000000000000000000000000001E+60\n')
        call same('R -', '1000000000000000000000000000000000000000000000000000000000000E-60\n')
        call same('R -', '18446744073709551616\n')
        call same('R -', '18446744073709551617\n')
        call same('R -', '18446744073709.551617\n')
        call same('R -', '36893488147419103233E-19\n')
        call same('R -', '340282366920938463463374607431768211457E-38\n')
        call same('R -', '8.589973E9\n')
        call same('R -', '9.007199254740993E15\n')
    end subroutine

    subroutine range_rows
        character(*), parameter :: large = 'a number beyond its 32-bit type is not a number'
        character(*), parameter :: small = 'a real below the smallest normal one is 0'
        call note('ends of the range')
        call same('I -', '2147483647\n')
        call same('I -', '-2147483648\n')
        call same('I -', '+2147483647\n')
        call same('I -', '2147483648\n')
        call same('I -', '-2147483649\n')
        call same('I -', '4294967296\n')
        call same('I -', '4294967301\n')
        call same('I -', '99999999999\n')
        call same('I -', '18446744073709551621\n')
        call same('I -', '-99999999999999999999999999999999\n')
        call same('i2 -', '2*2147483648\n')
        call same('R -', '3.4028234E+38\n')
        call same('R -', '3.4028235E+38\n')
        call same('R -', '0.340282347E+39\n')
        call same('R -', '-0.340282347E+39\n')
        call same('R -', '3.40282356779733661637E+38\n')
        call differs('R -', '3.40282356779733661638E+38\n', 'error', '-', large)
        call differs('R -', '3.4028236E+38\n', 'error', '-', large)
        call differs('R -', '1E39\n', 'error', '-', large)
        call differs('R -', '-1E39\n', 'error', '-', large)
        call differs('R -', '1D+100\n', 'error', '-', large)
        call differs('R -', '1+400\n', 'error', '-', large)
        call differs('R -', '1E99999\n', 'error', '-', large)
        call differs('R -', '1E99999999999999999999\n', 'error', '-', large)
        call differs('R -', '1000000000000000000000000000000000000000\n', 'error', '-', large)
        call differs('r3 -', '1 2*1E39 3\n', 'error', '-', large)
        call differs('R -', '1000000000000000000000000000000000000000000000000000000000000E-10\n', 'error', '-', large)
        call differs('R -', '0000000000000000000000000000000000000000000000000000000001E+50\n', 'error', '-', large)
        call differs('R -', '0.00000000000000000000000000000000000000000000000000001E+99\n', 'error', '-', large)
        call differs('R -', '99999.9E34\n', 'error', '-', large)
        call same('R -', '0.000000000000000000000000000000000000000000000000000000000000000001E+10\n')
        call same('R -', '1000000000000000000000000000000E-99\n')
        call same('R -', '0000000000000000000000000000000000000000000000000000000001E-50\n')
        call same('R -', '0E99\n')
        call same('R -', '0E99999\n')
        call same('R -', '0.0E-99999\n')
        call same('R -', '1E-99\n')
        call same('R -', '-1E-99\n')
        call same('R -', '1D-400\n')
        call same('R -', '1E-99999\n')
        call same('R -', '1E-99999999999999999999\n')
        call same('R -', '0.117549435E-37\n')
        call same('R -', '-0.117549435E-37\n')
        call same('R -', '1.17549435E-38\n')
        call same('R -', '1.1754944E-38\n')
        call differs('R -', '1.1754942E-38\n', '00000000', '-', small)
        call differs('R -', '-1.1754942E-38\n', '00000000', '-', small)
        call differs('R -', '1E-38\n', '00000000', '-', small)
        call differs('R -', '1E-40\n', '00000000', '-', small)
        call differs('R -', '-1.5D-42\n', '00000000', '-', small)
        call differs('R -', '1.4E-45\n', '00000000', '-', small)
        call differs('R -', '0.00000000000000000000000000000000000000001\n', '00000000', '-', small)
        call differs('r3 R', '1 2*1E-40\n4\n', '3F800000 00000000 00000000', '40800000', small)
    end subroutine

    subroutine touching_rows
        character(*), parameter :: sign = 'a sign right behind a complete number begins the next value'
        call note('fields that touch')
        call differs('RR I', ' 0.1000E+01-0.1000E+01\n4\n', '3F800000 BF800000', '4', sign)
        call differs('r2 I', '0.1000E+01-0.1000E+01\n4\n', '3F800000 BF800000', '4', sign)
        call differs('r3 I', '-0.1000E+01-0.2000E+01-0.4000E+01\n4\n', 'BF800000 C0000000 C0800000', '4', sign)
        call differs('r3 I', '0.1000E+01-0.2000E+01 0.4000E+01\n4\n', '3F800000 C0000000 40800000', '4', sign)
        call differs('r2 I', '0.1000D-01+0.1000D+01\n4\n', '3C23D70A 3F800000', '4', sign)
        call differs('r2 I', '1E5+3\n4\n', '47C35000 40400000', '4', sign)
        call differs('r2 I', '1.5+3-2\n4\n', '44BB8000 C0000000', '4', sign)
        call differs('r2 I', '15-3+.5\n4\n', '3C75C28F 3F000000', '4', sign)
        call differs('r3 I', '1.5+3-2+1/\n4\n', '44BB8000 C1A00000 _', '4', sign)
        call differs('R I', '0.1000E+01-0.1000E+01\n4\n', '3F800000', '4', sign)
        call differs('R I', '0.1000E+01-text\n4\n', '3F800000', '4', sign)
        call differs('II I', '2-1\n4\n', '2 -1', '4', sign)
        call differs('II I', '    2-1234\n4\n', '2 -1234', '4', sign)
        call differs('II I', '2+1\n4\n', '2 1', '4', sign)
        call differs('i4 I', '-2-1+3-4\n4\n', '-2 -1 3 -4', '4', sign)
        call differs('I I', '2-1\n4\n', '2', '4', sign)
        call differs('IR I', '    2-0.1000E+01\n4\n', '2 BF800000', '4', sign)
        call differs('IRR I', '    2-0.1000E+01-0.2000E+01\n4\n', '2 BF800000 C0000000', '4', sign)
        call differs('IIRR I', '    2   -3-0.1000E+01 0.2000E+01\n4\n', '2 -3 BF800000 40000000', '4', sign)
        call differs('IR I', '2-.5\n4\n', '2 BF000000', '4', sign)
        call differs('RI I', '0.1000E+01-2\n4\n', '3F800000 -2', '4', sign)
        call differs('i3 I', '2*1-3\n4\n', '1 1 -3', '4', sign)
        call differs('r3 I', '2*1E1-3\n4\n', '41200000 41200000 C0400000', '4', sign)
        call differs('i3 I', '1-2\n3\n4\n', '1 -2 3', '4', sign)
        call differs('i3 I', '1-2/\n4\n', '1 -2 _', '4', sign)
        call note('touching fields that are no two values')
        call same('RI -', '0.1000E+01-0.1000E+01\n')
        call same('RR -', '    2-0.1000E+01\n')
        call same('RR -', '1.5-0.25\n')
        call same('II -', '2-\n')
        call same('II -', '2- 1\n')
        call same('II -', '2--1\n')
        call same('II -', '2-x\n')
        call same('II -', '2-1.5\n')
        call same('RR -', '1E1-\n')
        call same('RR -', '1E1-,2\n')
        call same('RR -', '1E1--2\n')
        call same('RR -', '1E1.5\n')
        call same('RR -', '1E1E1\n')
        call same('RR -', '0.1000E+010.1000E+01\n')
        call same('III -', '1-2*3\n')
    end subroutine

    subroutine error_rows
        character(*), parameter :: text_value = 'NaN and Inf are text, not numbers'
        character(*), parameter :: letter = 'exponent letters are E and D only'
        character(*), parameter :: semicolon = 'a semicolon does not separate'
        call note('an integer read takes an integer only')
        call same('I -', '1.5\n')
        call same('I -', '5.\n')
        call same('I -', '.5\n')
        call same('I -', '5.0\n')
        call same('I -', '1E3\n')
        call same('I -', '1E0\n')
        call same('I -', '1D3\n')
        call same('i3 -', '1 2.0 3\n')
        call same('RI -', '1.0 2.0\n')
        call same('RRI -', '1 2 3.\n')
        call note('no number')
        call same('I -', 'x\n')
        call same('R -', 'x\n')
        call same('I -', 'five\n')
        call same('I -', '5x\n')
        call same('R -', '5x\n')
        call same('R -', '5.x\n')
        call same('R -', '5.0x\n')
        call same('R -', '5E1x\n')
        call same('I -', 'x5\n')
        call same('I -', '5_4\n')
        call same('R -', '5_4\n')
        call same('I -', '0x10\n')
        call same('R -', '0x10\n')
        call same('R -', '0x1p3\n')
        call same('R -', '1p3\n')
        call same('I -', 'T\n')
        call same('R -', '.TRUE.\n')
        call same('I -', '-\n')
        call same('I -', '+\n')
        call same('R -', '-\n')
        call same('R -', '+\n')
        call same('I -', '- 5\n')
        call same('R -', '- 5\n')
        call same('I -', '--5\n')
        call same('I -', '+-5\n')
        call same('R -', '--5\n')
        call same('R -', '-+5\n')
        call same('R -', '1.2.3\n')
        call same('R -', '1..2\n')
        call same('R -', '..5\n')
        call same('I -', '1''2\n')
        call same('I -', '''5''\n')
        call same('I -', '"5"\n')
        call same('R -', '''5''\n')
        call same('R -', '"5"\n')
        call same('I -', '$5\n')
        call same('I -', '5%\n')
        call same('R -', '(1.0,2.0)\n')
        call same('I -', '*\n')
        call same('I -', '*****\n')
        call same('R -', '***********\n')
        call same('II -', '5 *****\n')
        call same('RR -', '5. ***********\n')
        call same('RR -', '5.***********\n')
        call same('II -', '5*****\n')
        call same('I -', '! 5\n')
        call same('I -', '5!\n')
        call same('R -', '5!\n')
        call same('I -', '# 5\n')
        call same('I -', '=5\n')
        call same('I -', '5:6\n')
        call same('I -', '\xB5\n')
        call same('R -', '\xC3\xA9\n')
        call same('I -', '5\xA0\n')
        call same('R -', '5\xFF\n')
        call same('I -', '\x01\n')
        call differs('R -', '\x00\n', 'error', '-', 'a zero byte is no number')
        call same('I -', '5\x00\n')
        call same('II -', '5 \x7F\n')
        call same('II -', '5 x\n')
        call same('II -', '5\nx\n')
        call same('II -', '5,x\n')
        call same('II -', ',x\n')
        call same('III -', '1 2 x\n')
        call same('IRR -', '1 2.5 x\n')
        call same('r3 -', '1.5 text 2.5\n')
        call same('I I', '5\nx\n')
        call same('R R', '5\nx\n')
        call same('I I', '5\n1.5\n')
        call same('II II', '1 2 x\n3 x\n')
        call note('faulty exponents')
        call same('R -', '1E\n')
        call same('R -', '1.5E\n')
        call same('R -', '1.5D\n')
        call same('R -', '1.5E+\n')
        call same('R -', '1.5E-\n')
        call same('R -', '1.5+\n')
        call same('R -', '1.5-\n')
        call same('R -', '15-\n')
        call same('R -', '1.5E 3\n')
        call same('R -', '1.5E+ 3\n')
        call same('R -', '1.5E+-3\n')
        call same('R -', '1.5E++3\n')
        call same('R -', '1.5EE3\n')
        call same('R -', '1.5ED3\n')
        call same('R -', '1.5E3.0\n')
        call same('R -', '1.5E.3\n')
        call same('R -', '1.5E,3\n')
        call same('R -', '1.5E/\n')
        call same('R -', '1.5F3\n')
        call same('R -', '1.5G3\n')
        call same('R -', '1.5X3\n')
        call same('RR -', '1.5 E3\n')
        call differs('R -', '1.5Q3\n', 'error', '-', letter)
        call differs('R -', '1.5q+3\n', 'error', '-', letter)
        call differs('R -', '5Q3\n', 'error', '-', letter)
        call note('no digit in the mantissa')
        call same('R -', 'E5\n')
        call same('R -', '+E5\n')
        call same('R -', 'D+5\n')
        call same('R -', '.\n')
        call same('R -', '+.\n')
        call same('R -', '-.\n')
        call same('R -', '.E5\n')
        call same('R -', '-.E5\n')
        call same('R -', '.+5\n')
        call same('R -', '., 5\n')
        call same('R -', './\n')
        call same('R -', '2*.\n')
        call note('NaN and Inf')
        call same('I -', 'NaN\n')
        call same('I -', 'Inf\n')
        call differs('R -', 'NaN\n', 'error', '-', text_value)
        call differs('R -', 'nan\n', 'error', '-', text_value)
        call differs('R -', '+NaN\n', 'error', '-', text_value)
        call differs('R -', 'NaN(1)\n', 'error', '-', text_value)
        call differs('R -', 'Inf\n', 'error', '-', text_value)
        call differs('R -', '-inf\n', 'error', '-', text_value)
        call differs('R -', '+Infinity\n', 'error', '-', text_value)
        call differs('R -', 'INFINITY\n', 'error', '-', text_value)
        call differs('r3 -', '1 NaN 3\n', 'error', '-', text_value)
        call differs('r3 -', '3*Inf\n', 'error', '-', text_value)
        call same('R -', 'Infinit\n')
        call same('R -', 'nano\n')
        call note('semicolons')
        call differs('II -', '1;2\n', 'error', '-', semicolon)
        call differs('RR -', '1.5;2.5\n', 'error', '-', semicolon)
        call differs('I -', '1;\n', 'error', '-', semicolon)
        call differs('II -', '1 ; 2\n', 'error', '-', semicolon)
        call differs('I -', ';1\n', 'error', '-', semicolon)
    end subroutine

    ! Lines put together at random from the parts of well-formed input, so that every separator
    ! stands beside every kind of value. Lines of which the run-time keeps an infinity or a denormal
    ! are left out; single reals of that sort are marked, as these are the only differences that
    ! such numbers can have. What a line ought to give is what the run-time reads from its text with
    ! blanks for line ends: with these it loses the null before a comma that begins a line.
    subroutine drawn_rows
        character(*), parameter :: why_large = 'a number beyond its 32-bit type is not a number'
        character(*), parameter :: why_small = 'a real below the smallest normal one is 0'
        character(8), parameter :: kinds(15) = [character(8) :: 'I', 'R', 'II', 'RR', 'III', 'IRR', 'RIR', 'IIRR', &
            'IRRI', 'IIIIR', 'i4', 'i6', 'r4', 'r6', 'r9']
        character(:), allocatable :: reads, text, first, second, other_first, other_second
        integer :: i, k
        logical :: whole_only, mixed, apart

        call note('lines drawn at random')
        i = 0
        do while (i < 3000)
            k = 1 + below(size(kinds))
            reads = trim(kinds(k))
            whole_only = scan(reads, 'Ii') > 0
            mixed = whole_only .and. scan(reads, 'Rr') > 0
            if (below(2) == 1) then
                reads = reads//' '//merge('I', 'R', whole_only)
                text = drawn_text(whole_only, mixed)//'\n77\n'
            else
                reads = reads//' '//trim(kinds(k))
                text = drawn_text(whole_only, mixed)//'\n'//drawn_text(whole_only, mixed)//'\n'
            end if
            call joined_outcome(reads, text, first, second, apart)
            if (apart .or. first == 'error' .or. second == 'error') cycle
            if (first == 'end') then
                if (below(6) > 0) cycle
            end if
            call outcome(reads, text, other_first, other_second)
            if (first == other_first .and. second == other_second) then
                write (out, '(7a)') reads, '|', text, '|', first, '|', second
            else
                write (out, '(15a)') reads, '|', text, '|', first, '|', second, '|differs|', other_first, '|', &
                    other_second, '|', WHY_NULL
            end if
            i = i + 1
        end do
        call note('reals drawn at random')
        do i = 1, 1500
            text = drawn_real()
            call outcome('R -', text//'\n', first, second)
            if (beyond) then
                write (out, '(6a)') 'R -|', text, '\n|error|-|differs|', first, '|-|', why_large
            else if (too_small) then
                write (out, '(6a)') 'R -|', text, '\n|00000000|-|differs|', first, '|-|', why_small
            else
                write (out, '(4a)') 'R -|', text, '\n|', first//'|-'
            end if
        end do
    end subroutine

    ! Repeated values over variables of both kinds: what they ought to give is what the run-time
    ! reads from the same line with the repeats written out.
    subroutine drawn_repeat_rows
        character(8), parameter :: kinds(8) = [character(8) :: 'IR', 'RI', 'IIR', 'IRR', 'RIR', 'IIRR', 'IRRI', &
            'IIIIR']
        character(:), allocatable :: reads, text, plain, value, gap
        character(:), allocatable :: first, second, other_first, other_second
        character(4) :: count_text
        integer :: i, k, n, repeats

        call note('repeats over variables of both kinds, drawn at random')
        i = 0
        do while (i < 200)
            reads = trim(kinds(1 + below(size(kinds))))//' I'
            text = ''
            plain = ''
            do n = 1, 5
                value = drawn_value(.true.)
                gap = drawn_separator()
                repeats = 1 + below(5)
                write (count_text, '(i0)') repeats
                text = text//trim(count_text)//'*'//value//gap
                plain = plain//value
                do k = 2, repeats
                    plain = plain//' '//value
                end do
                plain = plain//gap
            end do
            call outcome(reads, text//'\n77\n', other_first, other_second)
            call outcome(reads, plain//'\n77\n', first, second)
            call drawn_pair(reads, text//'\n77\n', first, second, other_first, other_second, &
                'a repeated value may fill integer and real variables alike')
            i = i + 1
        end do
    end subroutine

    ! Lines of fields as the system itself writes them, each field as wide as its longest value: a
    ! negative value then leaves no blank before it. What they ought to give is what the run-time
    ! reads with a blank between the fields.
    subroutine drawn_field_rows
        character(8), parameter :: kinds(9) = [character(8) :: 'IR', 'RI', 'RR', 'RRR', 'IRR', 'IIRR', 'IRRI', 'r4', &
            'r6']
        character(7), parameter :: layouts(3) = ['(e11.4)', '(e12.5)', '(e13.6)']
        character(:), allocatable :: reads, text, spaced, first, second, other_first, other_second
        character(16) :: field
        character(7) :: layout
        character :: kind
        integer :: i, k, n, value
        integer(int32) :: bits

        call note('lines of fields that may touch')
        i = 0
        do while (i < 400)
            reads = trim(kinds(1 + below(size(kinds))))
            n = len(reads)
            if (reads(1:1) == 'r') read (reads(2:), *) n
            text = ''
            spaced = ''
            layout = layouts(1 + below(3))
            do k = 1, n
                kind = 'R'
                if (reads(1:1) /= 'r') kind = reads(k:k)
                if (kind == 'I') then
                    value = below(10**(1 + below(4)))
                    if (below(3) == 0) value = -value
                    write (field, '(i5)') value
                else
                    bits = bits32()
                    call mvbits(100 + below(50), 0, 8, bits, 23)
                    write (field, layout) transfer(bits, 0.0_real32)
                end if
                text = text//trim(field)
                spaced = spaced//' '//trim(field)
            end do
            reads = reads//' I'
            call outcome(reads, text//'\n77\n', other_first, other_second)
            call outcome(reads, spaced//'\n77\n', first, second)
            call drawn_pair(reads, text//'\n77\n', first, second, other_first, other_second, &
                'a sign right behind a complete number begins the next value')
            i = i + 1
        end do
    end subroutine

    subroutine drawn_pair(reads, text, first, second, other_first, other_second, why)
        character(*), intent(in) :: reads, text, first, second, other_first, other_second, why
        if (first == other_first .and. second == other_second) then
            write (out, '(7a)') reads, '|', text, '|', first, '|', second
        else if (other_first == 'error') then
            write (out, '(15a)') reads, '|', text, '|', first, '|', second, '|differs|', other_first, '|', &
                other_second, '|', why
        else
            print '(2a)', 'another difference than expected: ', text
            error stop 1
        end if
    end subroutine

    ! What E16.9 writes gives the same 32 bits back.
    subroutine written_rows
        character(16) :: text
        character(8) :: hex
        character(:), allocatable :: first, second
        integer(int32) :: bits
        integer :: i, e

        call note('written by E16.9 and read back')
        i = 0
        do while (i < 400)
            bits = bits32()
            e = ibits(bits, 23, 8)
            if (i < 20) call mvbits(1, 0, 8, bits, 23)
            if (i >= 20 .and. i < 40) call mvbits(254, 0, 8, bits, 23)
            if (i >= 40 .and. (e == 0 .or. e == 255)) cycle
            write (text, '(e16.9)') transfer(bits, 0.0_real32)
            write (hex, '(z8.8)') bits
            call outcome('R -', text//'\n', first, second)
            if (first /= hex) then
                print '(3a)', 'not read back: ', text, first
                error stop 1
            end if
            write (out, '(4a)') 'R -|', text, '\n|', first//'|-'
            i = i + 1
        end do
    end subroutine

    ! Decimals exactly half way between two 32-bit reals, and a hair beside: these show a reader
    ! that rounds twice.
    subroutine midpoint_rows
        integer :: i, k
        integer(int64) :: m
        real(real64) :: middle
        call note('half way between two reals')
        do i = 1, 120
            m = ior(2_int64*iand(int(bits32(), int64), 8388607_int64) + 16777216_int64, 1_int64)
            k = below(46) - 10
            middle = real(m, real64)*2.0_real64**(-k)
            call midpoint_row(middle)
            call midpoint_row(nearest(middle, 1.0_real64))
            call midpoint_row(nearest(middle, -1.0_real64))
            call short_midpoint_row(middle)
        end do
    end subroutine

    ! With 16 digits the decimal lies beside the middle, but often the 64-bit real next to it is the
    ! middle itself.
    subroutine short_midpoint_row(value)
        real(real64), intent(in) :: value
        character(22) :: text
        character(:), allocatable :: first, second
        write (text, '(es22.15)') value
        call outcome('R -', text//'\n', first, second)
        write (out, '(4a)') 'R -|', text, '\n|', first//'|-'
    end subroutine

    subroutine midpoint_row(value)
        real(real64), intent(in) :: value
        character(100) :: text
        character(:), allocatable :: first, second, short
        integer :: last
        write (text, '(f0.62)') value
        last = verify(text, '0 ', back=.true.)
        short = text(:last)
        call outcome('R -', short//'\n', first, second)
        write (out, '(4a)') 'R -|', short, '\n|', first//'|-'
    end subroutine

    function drawn_text(whole_only, mixed)
        logical, intent(in) :: whole_only, mixed
        character(:), allocatable :: drawn_text
        integer :: k, repeats
        character(4) :: count_text

        drawn_text = ''
        if (below(4) == 0) drawn_text = drawn_separator()
        do k = 1, 1 + below(9)
            select case (below(12))
            case (0)
                repeats = 1 + below(4)
                write (count_text, '(i0)') repeats
                drawn_text = drawn_text//trim(count_text)//'*'
                if (below(2) == 0 .and. .not. mixed) drawn_text = drawn_text//drawn_value(whole_only)
            case (1)
                if (below(3) == 0) drawn_text = drawn_text//'/'
            case default
                drawn_text = drawn_text//drawn_value(whole_only)
            end select
            drawn_text = drawn_text//drawn_separator()
        end do
    end function

    function drawn_value(whole_only)
        logical, intent(in) :: whole_only
        character(:), allocatable :: drawn_value
        character(12) :: text
        if (whole_only) then
            write (text, '(i0)') below(10**(1 + below(6))) - below(30)
            drawn_value = trim(text)
            if (below(8) == 0 .and. text(1:1) /= '-') drawn_value = '+'//drawn_value
        else
            drawn_value = drawn_real()
        end if
    end function

    function drawn_separator()
        character(:), allocatable :: drawn_separator
        select case (below(16))
        case (0)
            drawn_separator = ','
        case (1)
            drawn_separator = ' ,'
        case (2)
            drawn_separator = ', '
        case (3)
            drawn_separator = ' , '
        case (4)
            drawn_separator = '\n'
        case (5)
            drawn_separator = ' \n'
        case (6)
            drawn_separator = ',\n'
        case (7)
            drawn_separator = '\n,'
        case (8)
            drawn_separator = ',,'
        case (9)
            drawn_separator = '\t'
        case (10)
            drawn_separator = '\n\n '
        case (11)
            drawn_separator = ' ,\n '
        case default
            drawn_separator = ' '
        end select
    end function

    function drawn_real()
        character(:), allocatable :: drawn_real
        character(*), parameter :: letters = 'EeDd'
        character(4) :: number
        integer :: i, n, front

        select case (below(5))
        case (0)
            drawn_real = '-'
        case (1)
            drawn_real = '+'
        case default
            drawn_real = ''
        end select
        n = 1 + below(12)
        front = below(n + 1)
        do i = 1, n
            if (i == front + 1) drawn_real = drawn_real//'.'
            drawn_real = drawn_real//achar(iachar('0') + below(10))
        end do
        if (below(2) == 0 .and. front == n) drawn_real = drawn_real//'.'
        if (below(3) == 0) return
        i = below(4) + 1
        write (number, '(i0)') below(38)
        select case (below(6))
        case (0)
            drawn_real = drawn_real//letters(i:i)//trim(number)
        case (1)
            drawn_real = drawn_real//letters(i:i)//'+'//trim(number)
        case (2)
            drawn_real = drawn_real//'-'//trim(number)
        case (3)
            drawn_real = drawn_real//'+'//trim(number)
        case default
            drawn_real = drawn_real//letters(i:i)//'-'//trim(number)
        end select
    end function

end module free_rows

program make_tables
    use field_rows, only: make_field_text
    use free_rows, only: make_free_field
    implicit none
    call make_field_text('field_text.txt')
    call make_free_field('free_field.txt')
end program
